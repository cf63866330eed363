import QtQuick
import QtQuick.Templates as T

// A ring around the control that the keyboard acts on.
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
