import QtQuick

// Shows around its parent that the keyboard acts on the control.
Rectangle {
    required property Item target

    anchors.fill: parent
    anchors.margins: -3
    radius: Theme.controlRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
    visible: target.activeFocus && target.visualFocus
}
