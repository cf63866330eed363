import QtQuick
import QtQuick.Layouts

// Asks for a scan, and shows that one is under way.
RowLayout {
    id: row

    required property bool isScanning
    property alias text: button.text
    property alias symbolName: button.symbolName
    // What the keyboard acts on.
    property alias control: button

    signal clicked

    spacing: Theme.rowSpacing

    BusySpinner {
        visible: row.isScanning
    }
    ActionButton {
        id: button
        text: "Rescan"
        symbolName: "arrow.clockwise"
        description: row.isScanning ? "A scan is running" : ""
        Layout.fillWidth: true
        onClicked: row.clicked()
    }
}
