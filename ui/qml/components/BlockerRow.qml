import QtQuick
import QtQuick.Layouts

// A blocker: its reason, folder, path and details, and a button that reveals its file.
GridLayout {
    id: row

    required property string reason
    required property string folderName
    required property string path
    required property string details

    signal revealRequested

    columns: 3
    columnSpacing: Theme.rowSpacing
    rowSpacing: 2
    Layout.fillWidth: true

    Symbol {
        name: "exclamationmark.circle.fill"
        color: Theme.orange
        size: 18
        Layout.row: 0
        Layout.column: 0
        Layout.alignment: Qt.AlignVCenter
    }
    AppText {
        text: row.reason
        font.weight: Font.DemiBold
        Layout.row: 0
        Layout.column: 1
        Layout.fillWidth: true
    }
    ElidedText {
        whole: row.folderName
        font.pixelSize: Theme.subheadlineSize
        color: Theme.secondaryText
        Layout.row: 1
        Layout.column: 1
        Layout.columnSpan: 2
        Layout.fillWidth: true
    }
    FilePathText {
        path: row.path
        Layout.row: 2
        Layout.column: 1
        Layout.columnSpan: 2
        Layout.fillWidth: true
    }
    AppText {
        text: row.details
        font.pixelSize: Theme.smallSize
        color: Theme.secondaryText
        Layout.row: 3
        Layout.column: 1
        Layout.columnSpan: 2
        Layout.fillWidth: true
    }
    // Last in reading order, at the end of the first line.
    ActionButton {
        text: "Reveal in Finder"
        description: row.path
        onClicked: row.revealRequested()
        Layout.row: 0
        Layout.column: 2
    }
}
