import QtQuick
import QtQuick.Layouts
import Cirrovane

// A card around one section of a page; for a screen reader a group of the heading's name.
Item {
    id: card

    default property alias content: column.data
    property string heading: ""
    // Whether the heading stands in the card too, and not only in what a screen reader says.
    property bool showsHeading: false
    property alias spacing: column.spacing

    implicitWidth: column.implicitWidth + 2 * Theme.cardPadding
    implicitHeight: column.implicitHeight + 2 * Theme.cardPadding
    Layout.fillWidth: true

    Accessible.role: Accessible.Grouping
    Accessible.name: heading

    // The outline: a gradient all around, of which the card's own fill leaves a point in sight.
    CardOutline {
        anchors.fill: parent
        radius: Theme.cardRadius
        fill: Theme.cardFill
        outlineStart: Theme.cardOutlineStart
        outlineEnd: Theme.cardOutlineEnd
    }

    ColumnLayout {
        id: column
        // Content stays at the top of a card that is made as high as its neighbour.
        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            margins: Theme.cardPadding
        }
        spacing: Theme.cardSpacing

        AppText {
            text: card.heading
            visible: card.showsHeading
            font.pixelSize: Theme.headingSize
            font.weight: Font.DemiBold
            Layout.fillWidth: true
            Accessible.role: Accessible.Heading
        }
    }
}
