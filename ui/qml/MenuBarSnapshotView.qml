import QtQuick
import QtQuick.Layouts
import Cirrovane

// The verdict at a glance, and the most used actions.
ColumnLayout {
    id: view

    required property SnapshotViewModel snapshot
    required property AppSettings settings
    required property LeaveViewModel leaving

    signal exportRequested
    signal terminologyRequested
    // One of the menus' commands, by its name.
    signal commandGiven(name: string)

    readonly property color stateColor: Tone.color(snapshot.tone)

    component Caption: AppLabel {
        font.pixelSize: Theme.captionSize
        color: Theme.dimmedText
        Layout.fillWidth: true
    }

    spacing: Theme.rowSpacing

    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        Symbol {
            name: view.snapshot.menuBarSymbol
            size: 18
            color: view.stateColor
        }
        AppLabel {
            text: view.snapshot.statusLabel
            color: view.stateColor
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
        AppLabel {
            text: view.snapshot.score
            color: view.stateColor
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }
    }
    RowLayout {
        spacing: Theme.tightSpacing
        Layout.fillWidth: true

        AppLabel {
            text: view.snapshot.verdict
            color: view.snapshot.verdictNote.length > 0 ? Theme.dimmedText : Theme.text
            font.pixelSize: Theme.subheadlineSize
            font.weight: Font.DemiBold
            Layout.fillWidth: !mark.visible
            Accessible.description: mark.note
        }
        VouchMark {
            id: mark
            note: view.snapshot.isYesMarked ? view.snapshot.unvouched : ""
            size: 14
        }
        Item {
            visible: mark.visible
            Layout.fillWidth: true
        }
    }
    AppText {
        text: view.snapshot.verdictNote
        visible: text.length > 0
        color: Theme.yellow
        font.pixelSize: Theme.captionSize
        Layout.fillWidth: true
    }
    Caption {
        text: view.snapshot.scores
    }
    AppText {
        text: view.snapshot.liveness
        visible: text.length > 0
        color: Theme.dimmedText
        font.pixelSize: Theme.captionSize
        Layout.fillWidth: true
    }
    AppText {
        text: view.snapshot.uploads
        visible: text.length > 0
        font.pixelSize: Theme.captionSize
        Layout.fillWidth: true
    }
    RowLayout {
        visible: view.snapshot.unvouched.length > 0
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        AppText {
            text: view.snapshot.unvouched
            font.pixelSize: Theme.captionSize
            color: Theme.secondaryText
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter
        }
        ActionButton {
            text: "Review"
            description: view.snapshot.unvouched
            onClicked: view.snapshot.reviewCoverage()
        }
    }
    ColumnLayout {
        visible: view.snapshot.hasTopBlocker
        spacing: 2
        Layout.fillWidth: true

        Caption {
            text: "Top blocker"
        }
        FilePathText {
            path: view.snapshot.topBlocker
            copyLabel: "Copy"
            color: Theme.text
            font.pixelSize: Theme.subheadlineSize
            Layout.fillWidth: true
        }
    }
    ColumnLayout {
        visible: view.snapshot.hasLastFailed
        spacing: 2
        Layout.fillWidth: true

        Caption {
            text: "Last failed scan"
        }
        DatedText {
            text: view.snapshot.lastFailedTime
            date: view.snapshot.lastFailedDate
            font.pixelSize: Theme.subheadlineSize
            Layout.fillWidth: true
        }
        Caption {
            visible: text.length > 0
            text: view.snapshot.lastFailedReason
        }
    }
    LeavingSection {
        leaving: view.leaving
        textSize: Theme.captionSize
    }
    Divider {
        Layout.topMargin: Theme.tightSpacing
        Layout.bottomMargin: Theme.tightSpacing
    }
    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        AppLabel {
            text: "Theme"
            font.pixelSize: Theme.subheadlineSize
            Layout.fillWidth: true
        }
        ThemePicker {
            settings: view.settings
        }
    }
    GridLayout {
        columns: 2
        columnSpacing: Theme.rowSpacing
        rowSpacing: Theme.rowSpacing
        Layout.fillWidth: true

        RescanButton {
            isScanning: view.snapshot.isScanning
            onClicked: view.snapshot.rescan()
            Layout.fillWidth: true
            Layout.preferredWidth: 1
        }
        ActionButton {
            text: "Export Proof"
            symbolName: "square.and.arrow.up"
            onClicked: view.exportRequested()
            Layout.fillWidth: true
            Layout.preferredWidth: 1
        }
        ActionButton {
            text: "Check for Updates"
            onClicked: view.snapshot.checkForUpdates()
            Layout.fillWidth: true
            Layout.columnSpan: 2
        }
    }
    NoteRow {
        text: view.snapshot.exportNote
        textSize: Theme.captionSize
        action: view.snapshot.canRevealExport ? "Reveal in Finder" : ""
        onActed: view.snapshot.revealExport()
    }
    ToggleSwitch {
        text: "Show terminology in dashboard"
        isOn: view.settings.showTerminologyOnDashboard
        onSwitched: on => view.settings.showTerminologyOnDashboard = on
        Layout.fillWidth: true
    }
    ActionButton {
        text: "Terminology Guide"
        symbolName: "book"
        onClicked: view.terminologyRequested()
        Layout.fillWidth: true
    }
    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        ActionButton {
            text: "Open Cirrovane"
            onClicked: view.commandGiven("showWindow")
            Layout.fillWidth: true
        }
        ActionButton {
            text: "Settings..."
            onClicked: view.commandGiven("settings")
        }
        ActionButton {
            text: "Quit"
            onClicked: view.commandGiven("quit")
        }
    }
    Caption {
        text: view.snapshot.buildLabel
    }
}
