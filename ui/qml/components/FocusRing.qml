import QtQuick
import QtQuick.Templates as T

// Shows around its parent that the keyboard acts on the control.
Rectangle {
    required property T.Control target

    anchors.fill: parent
    anchors.margins: -3
    radius: Theme.controlRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
    visible: target.activeFocus && target.visualFocus
}
