import QtQuick

// Shows which control the keyboard acts on.
Rectangle {
    required property Item target

    anchors.fill: target
    anchors.margins: -3
    radius: Theme.controlRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
    visible: target.activeFocus && target.visualFocus
}
