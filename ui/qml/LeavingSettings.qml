import QtQuick
import Cirrovane

// What the application may do about leaving.
SettingsSection {
    id: section

    required property LeavingSetting leaving

    heading: "Leaving"

    SettingSwitch {
        title: "Keep awake while uploads are pending"
        explanation: "At most 8 hours on end. The lid always wins."
        isOn: section.leaving.keepsAwake
        note: section.leaving.keepAwakeNote
        onSwitched: on => section.leaving.keepsAwake = on
    }
    SettingRow {
        title: "Least battery"
        explanation: "On battery power, nothing is kept awake below this charge."

        SegmentedControl {
            label: "Least battery"
            choices: section.leaving.batteryLevels
            value: section.leaving.leastBattery
            onChosen: percent => section.leaving.leastBattery = percent
        }
    }
    SettingSwitch {
        title: "Ask before shutting down while it is not safe"
        explanation: "Waits for your answer, for as long as the system allows."
        isOn: section.leaving.asksBeforeShutdown
        note: section.leaving.askNote
        onSwitched: on => section.leaving.asksBeforeShutdown = on
    }
}
