import QtQuick
import QtQuick.Templates as T

// Content over a window that waits until it is closed. Escape and the window's closing shortcut close it.
T.Popup {
    id: sheet

    required property string title

    anchors.centerIn: T.Overlay.overlay
    width: Math.min(560, (parent ? parent.width : 640) - 48)
    height: Math.min(620, (parent ? parent.height : 700) - 48)
    padding: 20
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape

    // The item that had the keyboard before gets it back.
    property Item opener: null
    onAboutToShow: opener = parent.Window.activeFocusItem
    onClosed: opener?.forceActiveFocus(Qt.PopupFocusReason)

    Shortcut {
        // The linter of Qt 6.4 does not know StandardKey.
        sequences: [StandardKey.Close] // qmllint disable unqualified
        enabled: sheet.opened
        onActivated: sheet.close()
    }

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    background: Rectangle {
        radius: 16
        color: Theme.popupFill
        border.width: 1
        border.color: Theme.popupOutline
    }
}
