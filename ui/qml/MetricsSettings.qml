import QtQuick
import Cirrovane

// Whether this machine tells how it stands to who looks after many, and where.
SettingsSection {
    id: section

    required property MetricsSetting metrics

    heading: "Fleet"

    SettingSwitch {
        title: "Write metrics for this Mac"
        explanation: "For Prometheus, after each scan: numbers, and no name of a file."
        isOn: section.metrics.isOn
        note: section.metrics.note
        onSwitched: on => section.metrics.isOn = on
    }
    SettingRow {
        title: "Metrics file"
        explanation: section.metrics.place
        visible: explanation.length > 0

        ActionButton {
            text: "Choose..."
            description: "Another file for the metrics"
            onClicked: section.metrics.choosePlace()
        }
    }
}
