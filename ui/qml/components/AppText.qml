import QtQuick

// Text of a page: wrapped, and the user can select and copy it.
TextEdit {
    color: Theme.text
    font.pixelSize: Theme.bodySize
    readOnly: true
    selectByMouse: true
    selectionColor: Theme.selection
    selectedTextColor: Theme.text
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    activeFocusOnTab: false

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.readOnly: true
}
