import QtQuick
import QtQuick.Templates as T

// Shows where a page stands, and can be dragged.
T.ScrollBar {
    id: bar

    implicitWidth: 10
    padding: 2
    visible: size < 1
    policy: T.ScrollBar.AlwaysOn
    minimumSize: 0.08

    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: bar.pressed ? Theme.selectedFill : bar.hovered ? Theme.controlPressed : Theme.controlHover
    }

    Accessible.ignored: true
}
