pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// Every term of the page, a line each, beside what it stands for.
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

            required property var modelData

            spacing: Theme.tightSpacing
            Layout.fillWidth: true

            AppText {
                text: section.modelData.title
                font.pixelSize: Theme.captionSize
                font.weight: Font.DemiBold
                color: Theme.dimmedText
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
            Repeater {
                model: section.modelData.terms

                RowLayout {
                    id: term

                    required property var modelData

                    spacing: Theme.cardSpacing
                    Layout.fillWidth: true

                    AppText {
                        text: term.modelData.term
                        font.pixelSize: Theme.smallSize
                        font.weight: Font.DemiBold
                        Layout.preferredWidth: 156
                        Layout.alignment: Qt.AlignTop
                    }
                    AppText {
                        text: term.modelData.explanation
                        font.pixelSize: Theme.smallSize
                        color: Theme.secondaryText
                        Layout.fillWidth: true
                    }
                }
            }
        }
    }
}
