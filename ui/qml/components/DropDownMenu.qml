pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

// A button that opens a list of commands or choices. Arrow keys walk through the list, Escape closes it.
ActionButton {
    id: button

    // Each entry with a name, a title and a symbol.
    required property var entries
    // The number of the entry that is chosen now; -1 for none.
    property int chosenIndex: -1
    // What a screen reader calls a choice whose text says only what is chosen.
    property string label: ""
    // More entries than these are scrolled to.
    property int mostInSight: 12

    signal picked(name: string)

    function openList() {
        popup.open();
        const list = popup.contentItem as ListView;
        list.currentIndex = Math.max(0, button.chosenIndex);
        list.forceActiveFocus(Qt.TabFocusReason);
    }

    description: "Opens a list"
    rightPadding: leftPadding + 16
    onClicked: popup.opened ? popup.close() : openList()
    Keys.onDownPressed: openList()

    contentItem: AppLabel {
        text: button.text
        color: button.tint
        font.pixelSize: Theme.subheadlineSize
        font.weight: Font.Medium
        Accessible.ignored: true
    }

    Accessible.name: label.length > 0 ? label + ": " + text : text

    Symbol {
        name: "chevron.down"
        size: 11
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
    }

    T.Popup {
        id: popup
        y: button.height + 4
        // Keeps the list in the window.
        margins: 6
        implicitWidth: 210
        implicitHeight: implicitContentHeight + 12
        padding: 6
        focus: true
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
        onClosed: button.forceActiveFocus(Qt.PopupFocusReason)

        background: Rectangle {
            radius: 10
            color: Theme.popupFill
            border.width: 1
            border.color: Theme.popupOutline
        }

        contentItem: ListView {
            model: button.entries
            implicitHeight: Math.min(count, button.mostInSight) * 30
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationWraps: true
            activeFocusOnTab: true

            Accessible.role: Accessible.PopupMenu
            Accessible.name: button.text

            delegate: Entry {
            }
        }
    }

    component Entry: T.MenuItem {
        id: entry

        required property int index
        required property string name
        required property string title
        required property string symbol

        width: ListView.view.width
        implicitHeight: 30
        highlighted: ListView.isCurrentItem
        hoverEnabled: true
        onClicked: {
            popup.close();
            button.picked(name);
        }
        // Only a moving pointer chooses: the list may open under one that lies still.
        HoverHandler {
            property point before
            property bool hasBefore: false

            onHoveredChanged: hasBefore = false
            onPointChanged: {
                if (hasBefore && point.scenePosition !== before) {
                    entry.ListView.view.currentIndex = entry.index;
                }
                before = point.scenePosition;
                hasBefore = hovered;
            }
        }

        Keys.onReturnPressed: entry.clicked()
        Keys.onEnterPressed: entry.clicked()
        Keys.onSpacePressed: entry.clicked()

        contentItem: Row {
            leftPadding: 8
            spacing: 8

            // A choice without symbols marks the one that is chosen.
            Symbol {
                name: entry.symbol.length > 0 ? entry.symbol : "checkmark"
                visible: entry.symbol.length > 0 || button.chosenIndex >= 0
                opacity: entry.symbol.length > 0 || entry.index === button.chosenIndex ? 1 : 0
                size: 15
                anchors.verticalCenter: parent.verticalCenter
            }
            AppLabel {
                text: entry.title
                width: Math.min(implicitWidth, entry.width - 40)
                font.pixelSize: Theme.subheadlineSize
                font.weight: entry.index === button.chosenIndex ? Font.DemiBold : Font.Normal
                anchors.verticalCenter: parent.verticalCenter
                Accessible.ignored: true
            }
        }
        background: Rectangle {
            radius: 6
            color: entry.highlighted ? Theme.controlPressed : "transparent"
        }

        Accessible.name: title
        Accessible.onPressAction: entry.clicked()
    }
}
