import QtQuick
import QtQuick.Layouts

// Asks for a scan, and shows that one is under way: its symbol turns, or changes where nothing may move. Nothing beside
// it hops.
RowLayout {
    id: row

    required property bool isScanning
    property alias text: button.text
    property string symbolName: "arrow.clockwise"
    // What a screen reader says while it is.
    property string busyText: "A scan is running"
    property alias isCompact: button.isCompact
    // What the keyboard acts on.
    property alias control: button

    signal clicked

    spacing: Theme.rowSpacing

    // Keeps its place between two scans.
    BusySpinner {
        isBusy: row.isScanning
        visible: row.symbolName.length === 0
    }
    ActionButton {
        id: button
        text: "Rescan"
        symbolName: row.symbolName.length > 0 && row.isScanning && !Theme.motionEnabled ? "ellipsis.circle"
                  : row.symbolName
        description: row.isScanning ? row.busyText : ""
        Layout.fillWidth: true
        onClicked: row.clicked()
    }
    Timer {
        interval: 100
        repeat: true
        running: row.visible && row.isScanning && Theme.motionEnabled
        onTriggered: button.symbolAngle = (button.symbolAngle + 36) % 360
        onRunningChanged: if (!running) button.symbolAngle = 0
    }
}
