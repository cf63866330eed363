pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The page of the machine's own condition.
PremiumTabScaffold {
    id: page

    required property PageContext context

    title: "Live Status"
    subtitle: "Hardware and subsystem signals that affect reliability and confidence."

    SystemStatusViewModel {
        id: status
        context: page.context
    }

    component Rows: ColumnLayout {
        id: rows

        required property ListModelBase values

        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        Repeater {
            model: rows.values

            LabelValueRow {
            }
        }
    }

    PremiumCard {
        heading: "Captured"

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            LabelValueRow {
                label: "Captured"
                value: status.capturedAt
                hasEvenFigures: true
            }
            RescanButton {
                text: "Refresh"
                symbolName: ""
                isScanning: status.isScanning
                onClicked: status.rescan()
                Layout.fillWidth: false
            }
        }
    }

    // A wide page has two cards in a row.
    GridLayout {
        columns: page.isWide ? 2 : 1
        columnSpacing: Theme.pageSpacing
        rowSpacing: Theme.pageSpacing
        Layout.fillWidth: true

        PremiumCard {
            heading: "CPU"
            showsHeading: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1

            Rows {
                values: status.cpu
            }
        }
        PremiumCard {
            heading: "Memory"
            showsHeading: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1

            CapacityGauge {
                visible: status.hasMemoryGauge
                label: "Memory"
                ratio: status.memoryUsageRatio
                valueText: status.memoryUsageText
                tone: status.memoryUsageTone
            }
            Rows {
                values: status.memory
            }
        }
        PremiumCard {
            heading: "Storage"
            showsHeading: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1

            Rows {
                values: status.storage
            }
        }
        PremiumCard {
            heading: "Power"
            showsHeading: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1

            Rows {
                values: status.power
            }
        }
    }
    PremiumCard {
        heading: "Network"
        showsHeading: true

        Rows {
            values: status.network
        }
    }
    PremiumCard {
        heading: "Live Verdict"
        showsHeading: true

        Rows {
            values: status.live
        }
    }
    PremiumCard {
        heading: "Optional Sensors"
        showsHeading: true

        AppText {
            text: "Exact CPU temperature may be unavailable from default system APIs. Desktop tools can unlock richer hardware telemetry."
            font.pixelSize: Theme.subheadlineSize
            color: Theme.secondaryText
            Layout.fillWidth: true
        }
    }
}
