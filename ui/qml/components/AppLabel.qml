import QtQuick

// Text of a control or a row: one line, elided where it does not fit, whole for a screen reader.
Text {
    color: Theme.text
    font.pixelSize: Theme.bodySize
    elide: Text.ElideRight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
