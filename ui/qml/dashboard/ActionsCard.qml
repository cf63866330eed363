pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The next actions.
PremiumCard {
    id: card

    required property PageContext context

    heading: "Safe Next Actions"

    ActionsViewModel {
        id: actions
        context: card.context
    }

    CardHeading {
        heading: card.heading
        note: "Low risk first"
    }
    Repeater {
        model: actions.rows

        RowLayout {
            id: row

            required property string rank
            required property string title
            required property string detail

            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            AppText {
                text: row.rank
                font.weight: Font.DemiBold
                color: Theme.secondaryText
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 20
            }
            ColumnLayout {
                spacing: 2
                Layout.fillWidth: true

                AppText {
                    text: row.title
                    font.weight: Font.DemiBold
                    Layout.fillWidth: true
                }
                AppText {
                    text: row.detail
                    font.pixelSize: Theme.subheadlineSize
                    color: Theme.secondaryText
                    Layout.fillWidth: true
                }
            }
        }
    }
}
