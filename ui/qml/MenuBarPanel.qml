import QtQuick
import QtQuick.Templates as T
import Cirrovane

// The panel beside the tray icon, as high as its content where the screen has the room.
Window {
    id: panel

    required property SnapshotViewModel snapshot
    required property AppSettings settings
    // Of the screen, without what the desktop keeps for itself.
    property real availableHeight: Screen.desktopAvailableHeight

    title: "Cirrovane"
    width: 380
    height: Math.min(availableHeight, flickable.contentHeight)
    // A Mac hides a tool window of an inactive application, unless the window is made with this property.
    readonly property bool _q_macAlwaysShowToolWindow: true
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    color: Theme.liquidBottom

    onVisibleChanged: if (visible) snapshot.appeared()

    // The dialog takes the focus, which closes the panel. The panel comes back and says how the export ended.
    Connections {
        target: panel.snapshot
        function onExportEnded() {
            panel.show();
            panel.requestActivate();
        }
    }

    AppBackdropView {
        anchors.fill: parent
        isClassic: panel.settings.isClassic
        motionEnabled: false
    }
    // All of it is one card.
    Rectangle {
        anchors.fill: parent
        color: Theme.cardFill
    }

    ScrollingPage {
        anchors.fill: parent
        focus: true
        title: panel.title
        subtitle: ""
        area: flickable
        Keys.onEscapePressed: panel.close()

        Flickable {
            id: flickable
            anchors.fill: parent
            contentWidth: width
            contentHeight: content.implicitHeight + 2 * Theme.pagePadding
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: false

            T.ScrollBar.vertical: ScrollIndicator {
            }

            MenuBarSnapshotView {
                id: content
                x: Theme.pagePadding
                y: Theme.pagePadding
                width: flickable.width - 2 * Theme.pagePadding
                snapshot: panel.snapshot
                settings: panel.settings
                onExportRequested: panel.snapshot.exportProofPacket()
                onTerminologyRequested: guide.open()
            }
        }
    }

    TerminologyGuideView {
        id: guide
    }
}
