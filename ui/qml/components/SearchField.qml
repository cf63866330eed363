import QtQuick
import QtQuick.Templates as T

// A line to type what to look for, with a button that empties it.
T.TextField {
    id: field

    // Shown while it is empty; a screen reader hears it at any time.
    required property string label

    implicitWidth: 200
    implicitHeight: Theme.controlHeight
    leftPadding: 30
    rightPadding: 30
    color: Theme.text
    font.pixelSize: Theme.subheadlineSize
    font.family: Theme.family
    selectionColor: Theme.selection
    selectedTextColor: Theme.text
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.controlFill
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.focusRing : Theme.controlOutline
    }

    Symbol {
        name: "magnifyingglass"
        size: 14
        color: Theme.dimmedText
        x: 9
        anchors.verticalCenter: parent.verticalCenter
    }
    AppLabel {
        text: field.label
        visible: field.text.length === 0
        color: Theme.dimmedText
        font.pixelSize: Theme.subheadlineSize
        anchors.fill: parent
        anchors.leftMargin: field.leftPadding
        anchors.rightMargin: field.rightPadding
        Accessible.ignored: true
    }
    ActionButton {
        symbolName: "xmark"
        isPlain: true
        isCompact: true
        visible: field.text.length > 0
        description: field.label
        onClicked: {
            field.clear();
            field.forceActiveFocus(Qt.OtherFocusReason);
        }
        anchors.right: parent.right
        Accessible.name: "Clear Search"
    }

    Accessible.role: Accessible.EditableText
    Accessible.name: label
}
