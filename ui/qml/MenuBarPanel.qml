import QtQuick
import QtQuick.Layouts
import Cirrovane

// The panel beside the tray icon. It goes when something else gets the focus.
Window {
    id: panel

    required property SnapshotViewModel snapshot
    required property AppSettings settings

    title: "Cirrovane"
    width: 380
    height: column.implicitHeight + 2 * Theme.pagePadding
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    color: Theme.liquidBottom

    onVisibleChanged: if (visible) snapshot.appeared()
    onActiveChanged: if (!active && visible) close()

    AppBackdropView {
        anchors.fill: parent
        isClassic: panel.settings.isClassic
        motionEnabled: false
    }

    FocusScope {
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: panel.close()

        Accessible.role: Accessible.Pane
        Accessible.name: panel.title

        ColumnLayout {
            id: column
            anchors.fill: parent
            anchors.margins: Theme.pagePadding
            spacing: Theme.rowSpacing

            RowLayout {
                spacing: Theme.rowSpacing
                Layout.fillWidth: true

                Symbol {
                    name: panel.snapshot.menuBarSymbol
                    size: 18
                    color: Theme.stateColor(panel.snapshot.state)
                }
                AppLabel {
                    text: panel.snapshot.statusLabel
                    color: Theme.stateColor(panel.snapshot.state)
                    font.pixelSize: Theme.headingSize
                    font.weight: Font.DemiBold
                    Layout.fillWidth: true
                }
                AppLabel {
                    text: panel.snapshot.score
                    color: Theme.stateColor(panel.snapshot.state)
                    font.pixelSize: Theme.headingSize
                    font.weight: Font.Bold
                }
            }
            AppLabel {
                text: panel.snapshot.verdict
                font.pixelSize: Theme.subheadlineSize
                font.weight: Font.DemiBold
                Layout.fillWidth: true
            }
            AppLabel {
                text: panel.snapshot.scores
                font.pixelSize: Theme.captionSize
                color: Theme.dimmedText
                Layout.fillWidth: true
            }
        }
    }
}
