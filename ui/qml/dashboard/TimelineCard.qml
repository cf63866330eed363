pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The history of scans, and the export of the proof.
PremiumCard {
    id: card

    required property PageContext context

    signal exportRequested

    heading: "Audit Timeline"
    showsHeading: true

    TimelineViewModel {
        id: timeline
        context: card.context
    }

    // Has the same width in every row.
    component Cell: AppLabel {
        property real share: 1

        font.pixelSize: Theme.subheadlineSize
        color: Theme.secondaryText
        Layout.fillWidth: true
        Layout.preferredWidth: share
    }

    EmptyState {
        visible: timeline.isEmpty
        title: "No scan history yet"
        subtitle: "Run scans over time to build an evidence timeline."
    }
    ScoreTimelineChartView {
        visible: !timeline.isEmpty
        snapshots: timeline.snapshots
        // The history may change under the number.
        told: snapshots, timeline.scanText(marked)
        Layout.fillWidth: true
    }
    ColumnLayout {
        visible: !timeline.isEmpty
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        Repeater {
            model: timeline.rows

            RowLayout {
                id: row

                required property string time
                required property string date
                required property string score
                required property string local
                required property string blockers
                required property string verdict
                required property int tone

                spacing: Theme.rowSpacing
                Layout.fillWidth: true

                Rectangle {
                    implicitWidth: 8
                    implicitHeight: 8
                    radius: 4
                    color: Tone.color(row.tone)
                }
                DatedText {
                    text: row.time
                    date: row.date
                    font.pixelSize: Theme.subheadlineSize
                    wrapMode: TextEdit.NoWrap
                    Layout.fillWidth: true
                    Layout.preferredWidth: 120
                }
                Cell {
                    text: row.score
                    share: 80
                }
                Cell {
                    text: row.local
                    share: 80
                }
                Cell {
                    text: row.blockers
                    share: 120
                }
                Cell {
                    text: row.verdict
                    color: Theme.text
                    font.weight: Font.DemiBold
                    horizontalAlignment: Text.AlignRight
                    share: 180
                }
            }
        }
    }
    WarningText {
        text: timeline.saveFailure
    }
    ActionButton {
        text: "Export Proof Packet"
        symbolName: "square.and.arrow.up"
        onClicked: card.exportRequested()
    }
    NoteRow {
        text: timeline.exportNote
        action: timeline.canRevealExport ? "Reveal in Finder" : ""
        onActed: timeline.revealExport()
    }
}
