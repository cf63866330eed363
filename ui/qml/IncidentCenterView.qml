pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The page of the problems that diagnostics found.
PremiumTabList {
    id: page

    required property PageContext context

    title: "Incident Center"
    subtitle: "Persistent risk history with recurrence tracking and guardrail notifications."
    model: center.incidents
    lastControl: rescan.control

    IncidentCenterViewModel {
        id: center
        context: page.context
    }

    component Fact: AppText {
        wrapMode: TextEdit.NoWrap
        font.pixelSize: Theme.captionSize
        color: Theme.dimmedText
    }

    PremiumCard {
        heading: "Summary"

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            MetricPill {
                title: "Active"
                value: center.activeCount
                tone: Tone.Warning
                valueSize: Theme.countSize
            }
            MetricPill {
                title: "Resolved"
                value: center.resolvedCount
                tone: Tone.Good
                valueSize: Theme.countSize
            }
            MetricPill {
                title: "Recurring"
                value: center.recurringCount
                tone: Tone.Critical
                valueSize: Theme.countSize
            }
            ColumnLayout {
                spacing: Theme.tightSpacing
                Layout.fillWidth: true
                Layout.leftMargin: Theme.cardPadding

                AppText {
                    text: "Guardrail Notifications"
                    font.weight: Font.DemiBold
                    horizontalAlignment: TextEdit.AlignRight
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                AppText {
                    text: "Alerts when Safe to Close changes between safe and unsafe."
                    font.pixelSize: Theme.captionSize
                    color: Theme.dimmedText
                    horizontalAlignment: TextEdit.AlignRight
                    Layout.fillWidth: true
                }
                ToggleSwitch {
                    text: "Guardrail Notifications"
                    showsLabel: false
                    isOn: center.notificationsEnabled
                    onSwitched: on => center.notificationsEnabled = on
                    Layout.alignment: Qt.AlignRight
                }
                NoteRow {
                    text: center.notificationNote
                    textSize: Theme.captionSize
                    textColor: Theme.yellow
                    textAlignment: TextEdit.AlignRight
                    action: center.notificationAction
                    onActed: center.allowNotifications()
                }
            }
        }
        WarningText {
            text: center.saveFailure
        }
    }

    PremiumCard {
        heading: "Filter"

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            AppLabel {
                text: "Scope"
                font.pixelSize: Theme.subheadlineSize
                color: Theme.dimmedText
            }
            SegmentedControl {
                label: "Scope"
                choices: center.scopes
                value: center.scope
                onChosen: value => center.scope = value
            }
            AppLabel {
                text: "Severity"
                font.pixelSize: Theme.subheadlineSize
                color: Theme.dimmedText
                Layout.leftMargin: Theme.rowSpacing
            }
            SegmentedControl {
                label: "Severity"
                choices: center.severityFilters
                value: center.severityFilter
                onChosen: value => center.severityFilter = value
            }
            Item {
                Layout.fillWidth: true
            }
            RescanButton {
                id: rescan
                symbolName: ""
                isScanning: center.isScanning
                onClicked: center.rescan()
                Layout.fillWidth: false
            }
        }
    }

    PremiumCard {
        visible: center.isEmpty
        heading: "No incidents in this filter"

        EmptyState {
            title: "No incidents in this filter"
            subtitle: "Try changing scope or run additional scans."
        }
    }

    delegate: ListRow {
        id: row

        required property string title
        required property string detail
        required property string symbol
        required property string severity
        required property int tone
        required property string state
        required property int stateTone
        required property string domain
        required property string occurrences
        required property string firstSeen
        required property string lastSeen
        required property string action

        x: page.columnX
        width: page.columnWidth
        heading: title
        control: toggle

        RowLayout {
            spacing: Theme.cardSpacing
            Layout.fillWidth: true

            Symbol {
                name: row.symbol
                color: Tone.color(row.tone)
                size: 20
                Layout.alignment: Qt.AlignTop
            }
            ColumnLayout {
                spacing: Theme.tightSpacing
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignTop

                AppText {
                    text: row.title
                    font.weight: Font.DemiBold
                    Layout.fillWidth: true
                    Accessible.description: row.severity
                }
                Flow {
                    spacing: Theme.cardSpacing
                    Layout.fillWidth: true

                    Fact {
                        text: row.domain
                    }
                    Fact {
                        text: row.occurrences
                    }
                    Fact {
                        text: row.firstSeen
                    }
                    Fact {
                        text: row.lastSeen
                    }
                }
                AppText {
                    text: row.detail
                    font.pixelSize: Theme.subheadlineSize
                    color: Theme.dimmedText
                    Layout.fillWidth: true
                }
            }
            ColumnLayout {
                spacing: Theme.rowSpacing
                Layout.alignment: Qt.AlignTop

                StatusBadge {
                    text: row.state
                    tone: row.stateTone
                    Layout.alignment: Qt.AlignRight
                }
                ActionButton {
                    id: toggle
                    text: row.action
                    description: row.title
                    Layout.alignment: Qt.AlignRight
                    onClicked: page.toggleResolved(row.index, activeFocus, visualFocus)
                    Keys.onTabPressed: event => page.focusNext(row.index, event)
                    Keys.onBacktabPressed: event => page.focusPrevious(row.index, event)
                }
            }
        }
    }

    function toggleResolved(index, hadFocus, wasReached) {
        const before = center.incidents.count;
        center.toggleResolved(index);
        if (hadFocus && center.incidents.count < before) {
            focusInPlaceOf(index, wasReached ? Qt.TabFocusReason : Qt.OtherFocusReason);
        }
    }
}
