import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Cirrovane

// A sheet over the window with all that the user can choose. Each choice holds at once.
Sheet {
    id: sheet

    required property AppSettings settings

    title: "Settings"
    height: Math.min(Math.ceil(head.implicitHeight + column.implicitHeight) + Theme.cardSpacing + 2 * padding,
                     (parent ? parent.height : 700) - 48)
    onAboutToShow: settings.rereadSystem()

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        RowLayout {
            id: head
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            AppText {
                text: sheet.title
                font.pixelSize: Theme.headingSize
                font.weight: Font.Bold
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
            ActionButton {
                text: "Close"
                focus: true
                onClicked: sheet.close()
            }
        }

        // Keeps the control with the keyboard in sight.
        ScrollingPage {
            title: sheet.title
            subtitle: ""
            area: flickable
            Layout.fillWidth: true
            Layout.fillHeight: true

            Flickable {
                id: flickable
                anchors.fill: parent
                clip: true
                contentWidth: width
                contentHeight: column.implicitHeight
                boundsBehavior: Flickable.StopAtBounds

                T.ScrollBar.vertical: ScrollIndicator {
                }

                ColumnLayout {
                    id: column
                    width: flickable.width
                    spacing: Theme.pageSpacing

                    SettingsSection {
                        heading: "Appearance"

                        SettingRow {
                            title: "Theme"
                            explanation: "The look of window and panel."

                            ThemePicker {
                                settings: sheet.settings
                            }
                        }
                        SettingSwitch {
                            title: "Motion"
                            explanation: "Lets the backdrop drift and controls glide."
                            isOn: sheet.settings.motionEnabled
                            note: sheet.settings.motionNote
                            onSwitched: on => sheet.settings.motionEnabled = on
                        }
                        SettingSwitch {
                            title: "Show terminology in dashboard"
                            explanation: "Explains the terms right below the scores."
                            isOn: sheet.settings.showTerminologyOnDashboard
                            onSwitched: on => sheet.settings.showTerminologyOnDashboard = on
                        }
                    }
                    SettingsSection {
                        heading: "Notifications"

                        SettingSwitch {
                            title: "Guardrail Notifications"
                            explanation: "Alerts when Safe to Close changes between safe and unsafe."
                            isOn: sheet.settings.notificationsEnabled
                            note: isOn ? sheet.settings.notificationPermission.note : ""
                            action: sheet.settings.notificationPermission.action
                            onSwitched: on => sheet.settings.notificationsEnabled = on
                            onActed: sheet.settings.notificationPermission.act()
                        }
                    }
                    LeavingSettings {
                        leaving: sheet.settings.leaving
                    }
                    SettingsSection {
                        heading: "Login"

                        SettingSwitch {
                            title: "Open at login"
                            explanation: "Watches your folders from the moment you log in."
                            isOn: sheet.settings.loginItem.isOn
                            isAvailable: sheet.settings.loginItem.isAvailable
                            note: sheet.settings.loginItem.note
                            action: sheet.settings.loginItem.action
                            onSwitched: on => sheet.settings.loginItem.isOn = on
                            onActed: sheet.settings.loginItem.act()
                        }
                    }
                }
            }
        }
    }
}
