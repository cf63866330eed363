import QtQuick

// Tells by `containsMouse` whether the pointer is over its parent, and takes nothing else of it. Qt 6.4 notes a
// HoverHandler under a pointer that lies still once more at every picture, and never forgets.
MouseArea {
    anchors.fill: parent
    acceptedButtons: Qt.NoButton
    hoverEnabled: true
}
