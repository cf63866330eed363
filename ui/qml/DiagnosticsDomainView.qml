pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The page of one domain's findings.
PremiumTabScaffold {
    id: page

    required property PageContext context
    required property string domain

    title: diagnostics.title
    subtitle: "Signals beyond file-level blockers to explain system conditions affecting trust."

    DiagnosticsDomainViewModel {
        id: diagnostics
        context: page.context
        domain: page.domain
    }

    PremiumCard {
        heading: "Last Updated"

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            LabelValueRow {
                label: "Last Updated"
                value: diagnostics.lastUpdated
                hasEvenFigures: true
            }
            RescanButton {
                symbolName: ""
                isScanning: diagnostics.isScanning
                onClicked: diagnostics.rescan()
                Layout.fillWidth: false
            }
        }
    }

    Repeater {
        model: diagnostics.findings

        PremiumCard {
            id: card

            required property string title
            required property string detail
            required property string severity
            required property int tone

            heading: title

            RowLayout {
                spacing: Theme.cardSpacing
                Layout.fillWidth: true

                StatusBadge {
                    text: card.severity
                    tone: card.tone
                    Layout.alignment: Qt.AlignTop
                    // Badges of different words leave the titles in one line.
                    Layout.minimumWidth: 68
                }
                ColumnLayout {
                    spacing: Theme.tightSpacing
                    Layout.fillWidth: true

                    AppText {
                        text: card.title
                        font.weight: Font.DemiBold
                        Layout.fillWidth: true
                    }
                    AppText {
                        text: card.detail
                        font.pixelSize: Theme.subheadlineSize
                        color: Theme.dimmedText
                        Layout.fillWidth: true
                    }
                }
            }
        }
    }
    PremiumCard {
        visible: diagnostics.isEmpty
        heading: "No diagnostics in this category yet"

        EmptyState {
            title: "No diagnostics in this category yet"
            subtitle: "Run a scan to populate diagnostics."
        }
    }
}
