pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Cirrovane

// The panel beside the tray icon, as high as its content where the screen has the room.
Window {
    id: panel

    required property SnapshotViewModel snapshot
    required property AppSettings settings
    required property LeaveViewModel leaving
    required property MenuCommands commands
    // For the sheet of an export; none in a test of the panel alone.
    property PageContext context: null
    // Whether no menu bar of the desktop takes the keys of the commands.
    required property bool hasMenuBar
    // Of the screen, without what the desktop keeps for itself.
    property real availableHeight: Screen.desktopAvailableHeight

    title: "Cirrovane"
    width: 380
    height: Math.min(availableHeight, flickable.contentHeight)
    // A Mac hides a tool window of an inactive application, unless the window is made with this property.
    readonly property bool _q_macAlwaysShowToolWindow: true
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    color: Theme.liquidBottom

    onVisibleChanged: {
        if (visible) {
            snapshot.appeared();
        } else {
            guide.close();
            evidence?.close();
        }
    }

    property var evidence: null
    readonly property bool hasOpenSheet: guide.opened || (evidence?.opened ?? false)

    function showExport() {
        evidence = evidence ?? exportComponent.createObject(contentItem);
        evidence.open();
    }

    Component {
        id: exportComponent
        ExportView {
            context: panel.context
            // The dialog takes the focus, which closes the panel. The panel comes back and says how the export ended.
            onEnded: {
                panel.show();
                panel.requestActivate();
            }
        }
    }

    Repeater {
        model: panel.hasMenuBar ? ["settings", "rescan", "checkForUpdates", "showWindow", "quit"] : []

        Item {
            id: command
            required property string modelData

            Shortcut {
                sequence: panel.commands.keys(command.modelData)
                onActivated: panel.commands.trigger(command.modelData)
            }
        }
    }
    // An open sheet takes it.
    Shortcut {
        // The linter of Qt 6.4 does not know StandardKey.
        sequences: [StandardKey.Close] // qmllint disable unqualified
        enabled: !panel.hasOpenSheet
        onActivated: panel.close()
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
                leaving: panel.leaving
                onExportRequested: panel.showExport()
                onTerminologyRequested: guide.open()
                onCommandGiven: name => panel.commands.trigger(name)
            }
        }
    }

    TerminologyGuideView {
        id: guide
    }
}
