import QtQuick
import QtQuick.Templates as T

// A menu of one command beside what it is about. Escape closes it, and the keyboard goes back to where it was.
T.Popup {
    id: menu

    required property string text

    signal picked

    property Item opener: null

    function openAt(x, y) {
        menu.x = x;
        menu.y = y;
        opener = parent.Window.activeFocusItem;
        open();
        entry.forceActiveFocus(Qt.PopupFocusReason);
    }

    // Keeps the menu in the window.
    margins: 6
    padding: 6
    implicitWidth: entry.implicitWidth + 12
    implicitHeight: entry.implicitHeight + 12
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onClosed: opener?.forceActiveFocus(Qt.PopupFocusReason)

    background: Rectangle {
        radius: 10
        color: Theme.popupFill
        border.width: 1
        border.color: Theme.popupOutline
    }

    contentItem: FocusScope {
        Accessible.role: Accessible.PopupMenu
        Accessible.name: menu.text

        T.MenuItem {
            id: entry
            anchors.fill: parent
            implicitWidth: implicitContentWidth + 24
            implicitHeight: 30
            text: menu.text
            hoverEnabled: true
            focus: true
            onClicked: {
                menu.close();
                menu.picked();
            }

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
    }
}
