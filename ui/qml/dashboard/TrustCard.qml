pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The verdict, the scores and the counters behind them.
PremiumCard {
    id: card

    required property PageContext context

    heading: "Safe to Close"

    HealthViewModel {
        id: health
        context: card.context
    }

    component Dial: ScoreDialView {
        dialSize: 144
        strokeWidth: 12
        shadowRadius: 10
        Layout.rowSpan: 2
        Layout.row: 0
        Layout.margins: Theme.tightSpacing
    }

    GridLayout {
        columnSpacing: Theme.pageSpacing
        rowSpacing: Theme.tightSpacing
        Layout.fillWidth: true

        ColumnLayout {
            spacing: 0
            Layout.row: 0
            Layout.column: 0
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignBottom

            AppText {
                text: card.heading
                font.pixelSize: Theme.headingSize
                font.weight: Font.DemiBold
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
            RowLayout {
                spacing: Theme.rowSpacing
                Layout.fillWidth: true

                VerdictText {
                    text: health.verdict
                    color: Tone.color(health.verdictTone)
                    Layout.fillWidth: false
                    Accessible.description: health.verdictNote || health.coverageNote
                }
                VouchMark {
                    note: health.coverageNote
                    Layout.fillWidth: false
                }
            }
            AppText {
                text: health.coverageNote
                visible: text.length > 0
                font.pixelSize: Theme.subheadlineSize
                color: Theme.secondaryText
                Layout.fillWidth: true
            }
            AppText {
                text: health.verdictNote
                visible: text.length > 0
                font.pixelSize: Theme.subheadlineSize
                color: Theme.yellow
                Layout.fillWidth: true
            }
            AppText {
                text: health.liveness
                visible: text.length > 0
                font.pixelSize: Theme.captionSize
                color: Theme.dimmedText
                Layout.fillWidth: true
            }
        }
        Dial {
            score: health.uploadTrust
            tone: health.tone
            caption: "Upload Trust"
            Layout.column: 1
        }
        Dial {
            score: health.localAvailability
            tone: health.localTone
            caption: "Local Availability"
            Layout.column: 2
        }
        AppText {
            text: health.updatedText
            font.pixelSize: Theme.captionSize
            color: Theme.dimmedText
            Layout.row: 1
            Layout.column: 0
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
        }
    }
    UploadsSection {
        context: card.context
    }
    LeavingSection {
        leaving: card.context.leaving
    }
    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        Repeater {
            model: health.metrics

            MetricPill {
                required tone

                Layout.fillWidth: true
            }
        }
    }
}
