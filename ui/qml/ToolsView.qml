pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The page of the optional tools.
PremiumTabScaffold {
    id: page

    required property PageContext context

    title: "Tools & Downloads"
    subtitle: "Optional terminal tools for deeper subsystem checks."

    ToolsViewModel {
        id: catalogue
        context: page.context
    }

    component Fact: ColumnLayout {
        id: fact

        required property string label
        required property string value
        property bool isMonospaced: false

        spacing: 2
        Layout.fillWidth: true
        Layout.preferredWidth: 1
        Layout.alignment: Qt.AlignTop

        AppText {
            text: fact.label
            font.pixelSize: Theme.captionSize
            color: Theme.dimmedText
            Layout.fillWidth: true
        }
        AppText {
            text: fact.value
            isMonospaced: fact.isMonospaced
            font.pixelSize: Theme.subheadlineSize
            color: Theme.secondaryText
            Layout.fillWidth: true
        }
    }

    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        StatusBadge {
            text: catalogue.availableText
            tone: Tone.Info
        }
        StatusBadge {
            text: catalogue.installedText
            tone: Tone.Good
        }
    }

    Repeater {
        model: catalogue.tools

        PremiumCard {
            id: card

            required property int index
            required property string name
            required property string state
            required property int tone
            required property string purpose
            required property string unlocks
            required property string installCommand
            required property string status
            required property bool isInstalled
            required property bool isInstalling
            required property bool canInstall

            heading: name

            RowLayout {
                spacing: Theme.rowSpacing
                Layout.fillWidth: true

                AppText {
                    text: card.name
                    font.pixelSize: Theme.headingSize
                    font.weight: Font.DemiBold
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                StatusBadge {
                    text: card.state
                    tone: card.tone
                }
            }
            AppText {
                text: card.purpose
                font.pixelSize: Theme.subheadlineSize
                Layout.fillWidth: true
            }
            RowLayout {
                spacing: Theme.cardPadding
                Layout.fillWidth: true

                Fact {
                    label: "Unlocks:"
                    value: card.unlocks
                }
                Fact {
                    label: "Install command:"
                    value: card.installCommand
                    isMonospaced: true
                }
            }
            RowLayout {
                spacing: Theme.rowSpacing
                Layout.fillWidth: true

                ActionButton {
                    id: copy
                    text: "Copy"
                    symbolName: "doc.on.doc"
                    description: card.installCommand
                    onClicked: catalogue.copyInstallCommand(card.index)
                }
                ActionButton {
                    text: "Download"
                    symbolName: "square.and.arrow.down"
                    description: card.name
                    enabled: card.canInstall
                    visible: !card.isInstalled
                    onClicked: {
                        // The button is disabled during the install, and would lose the focus.
                        if (activeFocus) {
                            copy.forceActiveFocus(visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason);
                        }
                        catalogue.install(card.index);
                    }
                }
                BusySpinner {
                    visible: card.isInstalling
                }
                AppText {
                    text: card.status
                    visible: text.length > 0
                    font.pixelSize: Theme.subheadlineSize
                    color: Theme.secondaryText
                    Layout.fillWidth: true
                }
                Item {
                    Layout.fillWidth: card.status.length === 0
                }
            }
        }
    }

    PremiumCard {
        visible: !catalogue.hasHomebrew
        heading: "Homebrew"

        RowLayout {
            spacing: Theme.cardSpacing
            Layout.fillWidth: true

            WarningText {
                text: "Homebrew not found. Install Homebrew first to use one-click installs."
                role: Accessible.StaticText
            }
            ActionButton {
                text: "Download Homebrew"
                description: "Opens a web page"
                onClicked: catalogue.openHomebrewPage()
            }
        }
    }

    AppText {
        text: "Some hardware metrics are not exposed by default macOS APIs. Optional tools unlock deeper telemetry."
        font.pixelSize: Theme.subheadlineSize
        color: Theme.dimmedText
        Layout.fillWidth: true
    }
}
