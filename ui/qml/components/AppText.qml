import QtQuick

// Text of a page: wrapped, and the user can select and copy it.
TextEdit {
    // Commands need letters in columns.
    property bool isMonospaced: false
    // Times that change in place need figures of one width.
    property bool hasEvenFigures: false

    color: Theme.text
    // A layout of Qt 6.4 keeps the height of a text that now needs fewer lines.
    height: implicitHeight
    font.pixelSize: Theme.bodySize
    font.family: isMonospaced ? Theme.monospacedFamily : hasEvenFigures ? Theme.figuresFamily : Theme.family
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
