import QtQuick

// A setting that is on or off.
SettingRow {
    id: row

    property bool isOn: false
    property bool isAvailable: true

    signal switched(on: bool)

    ToggleSwitch {
        text: row.title
        showsLabel: false
        isOn: row.isOn
        enabled: row.isAvailable
        opacity: enabled ? 1 : 0.5
        onSwitched: on => row.switched(on)
    }
}
