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
        contentItem.forceActiveFocus(Qt.PopupFocusReason);
    }

    // Keeps the menu in the window.
    margins: 6
    padding: 6
    implicitWidth: implicitContentWidth + 12
    implicitHeight: implicitContentHeight + 12
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
        implicitWidth: childrenRect.width
        implicitHeight: childrenRect.height
        Accessible.role: Accessible.PopupMenu
        Accessible.name: menu.text

        MenuEntry {
            text: menu.text
            focus: true
            onClicked: {
                menu.close();
                menu.picked();
            }
        }
    }
}
