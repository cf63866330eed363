pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The page that explains the verdict.
PremiumTabScaffold {
    id: page

    required property PageContext context

    title: "Why This Verdict"
    subtitle: "Clear proof of why this device is safe or unsafe to pause right now."

    SafetyExplainerViewModel {
        id: explainer
        context: page.context
    }

    PremiumCard {
        heading: "Safe to Close"
        showsHeading: true

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            VerdictText {
                text: explainer.verdict
                color: Tone.color(explainer.verdictTone)
                Layout.fillWidth: false
                Accessible.description: explainer.verdictNote || explainer.coverageNote
            }
            VouchMark {
                note: explainer.coverageNote
                Layout.fillWidth: false
            }
        }
        AppText {
            text: explainer.coverageNote
            visible: text.length > 0
            font.pixelSize: Theme.subheadlineSize
            color: Theme.secondaryText
            Layout.fillWidth: true
        }
        AppText {
            text: explainer.verdictNote
            visible: text.length > 0
            font.pixelSize: Theme.subheadlineSize
            color: Theme.yellow
            Layout.fillWidth: true
        }
        AppText {
            text: "Safe to Close means the device can safely sleep, shut down, or disconnect from network risk based on currently observable sync signals."
            font.pixelSize: Theme.subheadlineSize
            color: Theme.secondaryText
            Layout.fillWidth: true
        }
        AppText {
            text: explainer.lastEvaluation
            font.pixelSize: Theme.captionSize
            color: Theme.dimmedText
            Layout.fillWidth: true
        }
    }

    PremiumCard {
        id: checklist

        heading: "Checklist"

        CardHeading {
            heading: checklist.heading
            note: "All must pass"
        }

        Repeater {
            model: explainer.criteria

            RowLayout {
                id: criterion

                required property string title
                required property string detail
                required property string symbol
                required property int tone
                required property string state

                spacing: Theme.cardSpacing
                Layout.fillWidth: true

                Symbol {
                    name: criterion.symbol
                    color: Tone.color(criterion.tone)
                    size: 20
                    Layout.alignment: Qt.AlignTop
                }
                ColumnLayout {
                    spacing: 2
                    Layout.fillWidth: true

                    AppText {
                        text: criterion.title
                        font.weight: Font.DemiBold
                        Layout.fillWidth: true
                        Accessible.description: criterion.state
                    }
                    AppText {
                        text: criterion.detail
                        font.pixelSize: Theme.subheadlineSize
                        color: Theme.dimmedText
                        Layout.fillWidth: true
                    }
                }
            }
        }
    }

    PremiumCard {
        visible: explainer.hasTopBlocker
        heading: "Top Blocking Reason"
        showsHeading: true

        AppText {
            text: explainer.topBlockerReason
            font.weight: Font.DemiBold
            color: Theme.orange
            Layout.fillWidth: true
        }
        FilePathText {
            path: explainer.topBlockerPath
            font.pixelSize: Theme.captionSize
            Layout.fillWidth: true
        }
        AppText {
            text: explainer.topBlockerDetails
            font.pixelSize: Theme.subheadlineSize
            color: Theme.dimmedText
            Layout.fillWidth: true
        }
        ActionButton {
            text: "Reveal in Finder"
            description: explainer.topBlockerPath
            onClicked: explainer.revealTopBlocker()
        }
    }
}
