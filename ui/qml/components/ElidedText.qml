pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

// A name or path on one line, which the user can select and copy. Where it is too long, a mark stands for a part of it;
// the tooltip, a screen reader and the clipboard have the whole.
TextEdit {
    id: edit

    // Made harmless for the screen.
    required property string whole
    property int elide: Text.ElideRight
    // What the command calls it that copies the whole.
    property string copyLabel: "Copy"
    readonly property bool truncated: text !== whole
    // What Copy takes: the selection, with what the mark stands for, or else the whole.
    readonly property string copied: selectedText.length > 0
                                     ? whole.slice(wholePosition(selectionStart), wholePosition(selectionEnd)) : whole

    // The place in the whole of a place in the text that is shown.
    function wholePosition(position: int): int {
        let head = 0;
        while (head < text.length && text[head] === whole[head]) {
            ++head;
        }
        return position <= head ? position : whole.length - (text.length - position);
    }

    function copyWhole() {
        clipboard.text = copied;
        clipboard.selectAll();
        clipboard.copy();
    }

    text: metrics.elidedText
    color: Theme.text
    // A layout of Qt 6.4 keeps the height of a text that now needs fewer lines.
    height: implicitHeight
    font.pixelSize: Theme.bodySize
    font.family: Theme.family
    readOnly: true
    selectByMouse: true
    persistentSelection: menu.opened
    selectionColor: Theme.selection
    selectedTextColor: Theme.text
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.NoWrap
    // A selection says itself where the keyboard is.
    readonly property bool isReachedByKey: selectedText.length === 0

    Layout.preferredWidth: Math.ceil(metrics.advanceWidth) + 1

    Accessible.role: Accessible.StaticText
    Accessible.name: whole
    Accessible.description: truncated ? whole : ""
    Accessible.readOnly: true
    Accessible.focusable: true

    Keys.onPressed: event => {
        if (event.matches(StandardKey.Copy)) { // qmllint disable unqualified
            edit.copyWhole();
            event.accepted = true;
        } else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
            menu.openAt(0, edit.height);
            event.accepted = true;
        }
    }

    TextMetrics {
        id: metrics
        font: edit.font
        text: edit.whole
        elide: edit.elide
        elideWidth: Math.max(1, edit.width)
    }
    // An editor that nobody sees is the toolkit's only way from here to the clipboard.
    TextEdit {
        id: clipboard
        visible: false
        textFormat: TextEdit.PlainText
        Accessible.ignored: true
    }
    Rectangle {
        anchors.fill: parent
        radius: 3
        color: "transparent"
        border.width: 1
        border.color: Theme.focusRing
        visible: edit.activeFocus && edit.isReachedByKey
    }
    HoverArea {
        id: pointer
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => menu.openAt(point.position.x, point.position.y)
    }
    AppToolTip {
        text: edit.whole
        visible: pointer.containsMouse && edit.truncated && !menu.opened
    }
    CommandMenu {
        id: menu
        text: edit.copyLabel
        onPicked: edit.copyWhole()
    }
}
