import QtQuick

// Text of a page: wrapped, and the user can select and copy it.
TextEdit {
    // For times and commands, whose figures and letters stand in columns.
    property bool isMonospaced: false

    color: Theme.text
    // A layout of Qt 6.4 forgets to make a text lower that has found room for fewer lines.
    height: implicitHeight
    font.pixelSize: Theme.bodySize
    font.family: isMonospaced ? Theme.monospacedFamily : Theme.family
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
