pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Cirrovane

// The commands of the application and its window. The linter of Qt 6.4 does not know StandardKey.
MenuBar {
    id: bar

    required property ShellViewModel shell
    // Whether the closing command is the window's; a sheet over it has the same key.
    property bool closesWindow: true

    signal closeRequested
    signal minimizeRequested
    signal quitRequested
    signal terminologyRequested

    background: Rectangle {
        color: Theme.popupFill
    }
    delegate: BarItem {
    }

    AppMenu {
        title: "Cirrovane"

        Action {
            text: "Check for Updates..."
            shortcut: "Ctrl+U"
            onTriggered: bar.shell.checkForUpdates()
        }
        Action {
            text: "Open Release Notes"
            onTriggered: bar.shell.openReleaseNotes()
        }
        MenuSeparator {
        }
        Action {
            text: "Quit Cirrovane"
            shortcut: StandardKey.Quit // qmllint disable unqualified
            onTriggered: bar.quitRequested()
        }
    }
    AppMenu {
        title: "View"

        Action {
            text: "Rescan"
            shortcut: "Ctrl+R"
            onTriggered: bar.shell.rescan()
        }
    }
    AppMenu {
        title: "Window"

        Action {
            text: "Minimize"
            shortcut: "Ctrl+M"
            onTriggered: bar.minimizeRequested()
        }
        Action {
            text: "Close Window"
            shortcut: StandardKey.Close // qmllint disable unqualified
            enabled: bar.closesWindow
            onTriggered: bar.closeRequested()
        }
    }
    AppMenu {
        title: "Help"

        Action {
            text: "Terminology Guide"
            onTriggered: bar.terminologyRequested()
        }
        Action {
            text: "FAQ"
            onTriggered: bar.shell.selectedTab = "faq"
        }
    }

    component BarItem: MenuBarItem {
        id: item

        implicitHeight: 26
        leftPadding: 10
        rightPadding: 10
        focusPolicy: Qt.TabFocus
        contentItem: AppLabel {
            text: item.text
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
        background: Rectangle {
            color: item.highlighted || item.visualFocus ? Theme.controlPressed : "transparent"
        }

        Keys.onReturnPressed: item.triggered()
        Keys.onEnterPressed: item.triggered()

        Accessible.role: Accessible.MenuItem
        Accessible.name: text
        Accessible.onPressAction: item.triggered()
    }

    component AppMenu: Menu {
        id: menu

        delegate: CommandItem {
        }
        background: Rectangle {
            implicitWidth: 240
            radius: 8
            color: Theme.popupFill
            border.width: 1
            border.color: Theme.popupOutline
        }
        padding: 6
    }

    component CommandItem: MenuItem {
        id: command

        implicitHeight: 28
        contentItem: RowLayout {
            spacing: 0

            AppLabel {
                text: command.text
                font.pixelSize: Theme.smallSize
                Layout.fillWidth: true
                Accessible.ignored: true
            }
            AppLabel {
                text: command.action ? bar.shell.shortcutText(command.action.shortcut) : ""
                font.pixelSize: Theme.smallSize
                color: Theme.dimmedText
                Accessible.ignored: true
            }
        }
        background: Rectangle {
            radius: 5
            color: command.highlighted ? Theme.controlPressed : "transparent"
        }

        Accessible.role: Accessible.MenuItem
        Accessible.name: text
        Accessible.onPressAction: {
            command.menu.dismiss();
            command.action.trigger();
        }
    }
}
