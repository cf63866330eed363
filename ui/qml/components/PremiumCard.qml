import QtQuick
import QtQuick.Layouts
import Cirrovane

// A card around a section of a page. A screen reader hears a group with the heading's name.
Item {
    id: card

    default property alias content: column.data
    property string heading: ""
    // Whether the card shows the heading too.
    property bool showsHeading: false

    implicitWidth: column.implicitWidth + 2 * Theme.cardPadding
    implicitHeight: column.implicitHeight + 2 * Theme.cardPadding
    Layout.fillWidth: true

    Accessible.role: Accessible.Grouping
    Accessible.name: heading

    // The card's fill leaves one point of the outline's gradient in sight.
    CardOutline {
        anchors.fill: parent
        radius: Theme.cardRadius
        fill: Theme.cardFill
        outlineStart: Theme.cardOutlineStart
        outlineEnd: Theme.cardOutlineEnd
    }

    ColumnLayout {
        id: column
        // Content stays at the top of a card that is as high as its neighbour.
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
