pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Cirrovane

// The menu bar in the window, for a desktop without a menu bar of its own.
MenuBar {
    id: bar

    required property ShellViewModel shell
    required property MenuCommands commands

    background: Rectangle {
        color: Theme.popupFill
    }
    delegate: BarItem {
    }

    Instantiator {
        model: bar.commands.menus
        delegate: menuComponent
        onObjectAdded: (index, menu) => bar.insertMenu(index, menu)
    }

    Component {
        id: menuComponent
        AppMenu {
        }
    }
    Component {
        id: actionComponent
        Action {
            required property var command

            text: command.text
            shortcut: command.shortcut
            enabled: command.enabled
            onTriggered: command.trigger()
        }
    }
    Component {
        id: separatorComponent
        MenuSeparator {
        }
    }

    component BarItem: MenuBarItem {
        id: item

        implicitHeight: 26
        leftPadding: 10
        rightPadding: 10
        focusPolicy: Qt.TabFocus
        contentItem: AppLabel {
            // No two menus begin with the same letter.
            text: `<u>${item.text[0]}</u>${item.text.slice(1)}`
            textFormat: Text.StyledText
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
        background: Rectangle {
            color: item.highlighted || item.visualFocus ? Theme.controlPressed : "transparent"
        }

        Keys.onReturnPressed: item.triggered()
        Keys.onEnterPressed: item.triggered()
        Shortcut {
            sequence: "Alt+" + item.text[0]
            onActivated: item.triggered()
        }

        Accessible.role: Accessible.MenuItem
        Accessible.name: text
        Accessible.onPressAction: item.triggered()
    }

    component AppMenu: Menu {
        id: menu

        required title
        required property ListModelBase commands

        Instantiator {
            model: menu.commands
            delegate: QtObject {
                required property var action
            }
            onObjectAdded: (index, row) => {
                if (row.action) {
                    menu.addAction(actionComponent.createObject(menu, {
                        command: row.action
                    }));
                } else {
                    menu.addItem(separatorComponent.createObject(menu.contentItem));
                }
            }
        }

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
            color: command.highlighted && command.enabled ? Theme.controlPressed : "transparent"
        }
        opacity: enabled ? 1 : 0.5

        Accessible.role: Accessible.MenuItem
        Accessible.name: text
        Accessible.onPressAction: {
            command.menu.dismiss();
            command.action.trigger();
        }
    }
}
