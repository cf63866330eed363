pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// Every term beside its explanation, a line each.
PremiumCard {
    heading: "Terminology"
    showsHeading: true

    TerminologyModel {
        id: terminology
    }

    Repeater {
        model: terminology.sections

        ColumnLayout {
            id: section

            required property string title
            required property ListModelBase terms

            spacing: Theme.tightSpacing
            Layout.fillWidth: true

            AppText {
                text: section.title
                font.pixelSize: Theme.captionSize
                font.weight: Font.DemiBold
                color: Theme.dimmedText
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
            Repeater {
                model: section.terms

                RowLayout {
                    id: row

                    required property string term
                    required property string explanation

                    spacing: Theme.cardSpacing
                    Layout.fillWidth: true

                    AppText {
                        text: row.term
                        font.pixelSize: Theme.smallSize
                        font.weight: Font.DemiBold
                        Layout.preferredWidth: 156
                        Layout.alignment: Qt.AlignTop
                    }
                    AppText {
                        text: row.explanation
                        font.pixelSize: Theme.smallSize
                        color: Theme.secondaryText
                        Layout.fillWidth: true
                    }
                }
            }
        }
    }
}
