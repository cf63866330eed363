import QtQuick
import QtQuick.Layouts

// A name at the start of a line and its value at the end.
RowLayout {
    id: row

    required property string label
    required property string value
    property bool hasEvenFigures: false

    spacing: Theme.rowSpacing
    Layout.fillWidth: true

    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + value

    AppLabel {
        text: row.label
        font.pixelSize: Theme.subheadlineSize
        color: Theme.dimmedText
        Accessible.ignored: true
    }
    AppText {
        text: row.value
        font.pixelSize: Theme.subheadlineSize
        font.weight: Font.Medium
        hasEvenFigures: row.hasEvenFigures
        horizontalAlignment: TextEdit.AlignRight
        Layout.fillWidth: true
        Accessible.ignored: true
    }
}
