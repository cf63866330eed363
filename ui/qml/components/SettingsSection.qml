import QtQuick
import QtQuick.Layouts

// Settings that belong together, below their heading. A screen reader hears a group of that name.
ColumnLayout {
    id: section

    required property string heading
    default property alias rows: column.data

    spacing: Theme.rowSpacing
    Layout.fillWidth: true

    Accessible.role: Accessible.Grouping
    Accessible.name: heading

    AppText {
        text: section.heading
        font.pixelSize: Theme.subheadlineSize
        font.weight: Font.DemiBold
        color: Theme.secondaryText
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    Rectangle {
        implicitHeight: column.implicitHeight + 2 * Theme.cardSpacing
        radius: Theme.controlRadius
        color: Theme.pillFill
        Layout.fillWidth: true

        ColumnLayout {
            id: column
            anchors {
                fill: parent
                margins: Theme.cardSpacing
            }
            spacing: Theme.cardSpacing
        }
    }
}
