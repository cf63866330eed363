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
                isMonospaced: true
            }
            BusySpinner {
                visible: diagnostics.isScanning
            }
            ActionButton {
                text: "Rescan"
                description: diagnostics.isScanning ? "A scan is running" : ""
                onClicked: diagnostics.rescan()
            }
        }
    }

    Repeater {
        model: diagnostics.findings

        PremiumCard {
            id: card

            required property string title
            required property string detail
            required property string severityTitle
            required property string severityLevel

            heading: title

            RowLayout {
                spacing: Theme.cardSpacing
                Layout.fillWidth: true

                StatusBadge {
                    text: card.severityTitle
                    tint: Theme.severityColor(card.severityLevel)
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
