import QtQuick
import QtQuick.Layouts
import Cirrovane

// The page's title and state, and the choices of look.
PremiumCard {
    id: card

    required property PageContext context
    required property AppSettings settings

    signal terminologyRequested

    heading: "Cirrovane"

    HealthViewModel {
        id: health
        context: card.context
    }

    RowLayout {
        spacing: Theme.cardSpacing
        Layout.fillWidth: true

        GridLayout {
            columns: 2
            columnSpacing: Theme.cardSpacing
            Layout.fillWidth: true

            PageHeading {
                title: card.heading
                subtitle: "Proof-driven sync confidence"
                Layout.row: 0
                Layout.column: 1
            }
            // Stands before the title; a screen reader hears it after the title.
            Item {
                implicitWidth: symbol.size
                implicitHeight: symbol.size
                Layout.row: 0
                Layout.column: 0

                Accessible.role: Accessible.Graphic
                Accessible.name: health.stateLabel

                Symbol {
                    id: symbol
                    name: health.stateSymbol
                    color: Tone.color(health.tone)
                    size: 40
                }
            }
        }
        RescanButton {
            isScanning: health.isScanning
            onClicked: health.rescan()
            Layout.fillWidth: false
        }
    }
    RowLayout {
        spacing: Theme.pageSpacing
        Layout.fillWidth: true

        ThemePicker {
            settings: card.settings
        }
        ToggleSwitch {
            text: "Motion"
            isOn: card.settings.motionEnabled
            onSwitched: on => card.settings.motionEnabled = on
        }
        Item {
            Layout.fillWidth: true
        }
        ActionButton {
            text: "Terminology"
            symbolName: "book"
            description: "Opens the terminology guide"
            onClicked: card.terminologyRequested()
        }
    }
}
