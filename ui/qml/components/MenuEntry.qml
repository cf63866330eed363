import QtQuick
import QtQuick.Templates as T

// A command of a menu.
T.MenuItem {
    id: entry

    implicitWidth: implicitContentWidth + 24
    implicitHeight: 30
    hoverEnabled: true

    Keys.onReturnPressed: entry.clicked()
    Keys.onEnterPressed: entry.clicked()
    Keys.onSpacePressed: entry.clicked()

    contentItem: AppLabel {
        text: entry.text
        leftPadding: 12
        font.pixelSize: Theme.subheadlineSize
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: 6
        color: entry.hovered || entry.activeFocus ? Theme.controlPressed : "transparent"
    }

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: entry.clicked()
}
