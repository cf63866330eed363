pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// Signals that are easily missed.
PremiumCard {
    id: card

    required property PageContext context

    signal coverageRequested

    heading: "Signals You Might Miss"
    showsHeading: true

    AwarenessViewModel {
        id: awareness
        context: card.context
    }

    component Detail: AppText {
        visible: text.length > 0
        font.pixelSize: Theme.subheadlineSize
        color: Theme.secondaryText
        Layout.fillWidth: true
    }

    AppText {
        text: awareness.recentStability
        font.pixelSize: Theme.subheadlineSize
        color: Theme.secondaryText
        Layout.fillWidth: true
    }
    Repeater {
        model: awareness.rows

        RowLayout {
            id: row

            required property string symbol
            required property int tone
            required property string title
            required property string text
            required property string reason
            required property string folder
            required property string explanation
            required property string date
            required property string path
            required property bool hasReview

            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            Symbol {
                name: row.symbol
                color: Tone.color(row.tone)
                size: 18
                Layout.alignment: Qt.AlignTop
            }
            ColumnLayout {
                spacing: 2
                Layout.fillWidth: true

                AppText {
                    text: row.title
                    font.weight: Font.DemiBold
                    Layout.fillWidth: true
                }
                DatedText {
                    text: row.text
                    date: row.date
                    font.pixelSize: Theme.subheadlineSize
                    color: Theme.secondaryText
                    Layout.fillWidth: true
                }
                Detail {
                    text: row.reason
                }
                Detail {
                    text: row.folder
                }
                Detail {
                    text: row.explanation
                }
                ActionButton {
                    text: "Reveal in Finder"
                    visible: row.path.length > 0
                    description: row.path
                    onClicked: awareness.revealLastFailed()
                    Layout.topMargin: Theme.tightSpacing
                }
                ActionButton {
                    text: "Review"
                    visible: row.hasReview
                    description: row.title
                    onClicked: card.coverageRequested()
                    Layout.topMargin: Theme.tightSpacing
                }
            }
        }
    }
}
