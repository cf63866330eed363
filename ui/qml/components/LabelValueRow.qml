import QtQuick
import QtQuick.Layouts

// A value at the end of the line that its name begins.
RowLayout {
    id: row

    required property string label
    required property string value
    property bool isMonospaced: false

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
        isMonospaced: row.isMonospaced
        horizontalAlignment: TextEdit.AlignRight
        Layout.fillWidth: true
        Accessible.ignored: true
    }
}
