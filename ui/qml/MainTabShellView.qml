pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

// The main window's content: the tab bar over the page of the chosen tab.
Item {
    id: shell

    required property ShellViewModel viewModel
    required property AppSettings settings
    required property ScanStatus scan
    required property PageContext context

    // Whether the tab bar has to save room.
    readonly property bool isNarrow: width < Theme.wideWidth

    signal terminologyRequested
    signal blockersRequested(folder: string)
    signal exportRequested

    AppBackdropView {
        anchors.fill: parent
        isClassic: shell.settings.isClassic
        motionEnabled: shell.settings.motionAllowed
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true
            Layout.leftMargin: 14
            Layout.rightMargin: 14
            Layout.topMargin: 8
            Layout.bottomMargin: 8

            // Scrolls sideways where the window is too narrow for all tabs.
            Flickable {
                id: tabs
                contentWidth: Math.ceil(tabRow.implicitWidth)
                implicitHeight: 36
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                flickableDirection: Flickable.HorizontalFlick
                Layout.fillWidth: true
                Layout.minimumWidth: 240
                Layout.preferredWidth: contentWidth
                Layout.maximumWidth: contentWidth

                function reveal(item) {
                    if (item.x < contentX) {
                        contentX = item.x;
                    } else if (item.x + item.width > contentX + width) {
                        contentX = item.x + item.width - width;
                    }
                }

                // Keeps the chosen tab in sight.
                function revealChosen() {
                    contentX = Math.max(0, Math.min(contentX, contentWidth - width));
                    if (extraTabs.isChosen) {
                        reveal(extraTabs);
                    }
                }

                onWidthChanged: revealChosen()
                onContentWidthChanged: revealChosen()

                Accessible.role: Accessible.PageTabList
                Accessible.name: "Tabs"

                Row {
                    id: tabRow
                    spacing: 2
                    height: parent.height

                    Repeater {
                        model: shell.viewModel.primaryTabs

                        TabButton {
                            required property string name
                            required property string title
                            required property string symbol

                            text: title
                            symbolName: symbol
                            isChosen: shell.viewModel.selectedTab === name
                            isCompact: shell.isNarrow
                            anchors.verticalCenter: parent.verticalCenter
                            onClicked: shell.viewModel.selectedTab = name
                            onIsChosenChanged: if (isChosen) tabs.reveal(this)
                            onActiveFocusChanged: if (activeFocus) tabs.reveal(this)
                        }
                    }
                    DropDownMenu {
                        id: extraTabs
                        isCompact: shell.isNarrow
                        text: shell.viewModel.extraTabsLabel
                        entries: shell.viewModel.extraTabs
                        chosenIndex: shell.viewModel.extraTabs.indexOf(shell.viewModel.selectedTab)
                        isChosen: chosenIndex >= 0
                        anchors.verticalCenter: parent.verticalCenter
                        onPicked: name => shell.viewModel.selectedTab = name
                        onActiveFocusChanged: if (activeFocus) tabs.reveal(this)
                    }
                }
            }

            Item {
                Layout.fillWidth: true
                Layout.preferredWidth: 0
            }
            AppLabel {
                id: statusLine
                // How far a scan has come is of more interest meanwhile.
                text: shell.scan.text.length > 0 ? shell.scan.text : shell.viewModel.updateStatusLine
                font.pixelSize: Theme.captionSize
                color: Theme.dimmedText
                horizontalAlignment: Text.AlignRight
                Layout.fillWidth: true
                // The tabs scroll before it says nothing any more.
                Layout.minimumWidth: Math.min(110, Math.ceil(implicitWidth))
                // Takes what the tabs leave.
                Layout.preferredWidth: 0
                Layout.maximumWidth: Math.min(300, Math.ceil(implicitWidth))

                HoverArea {
                    id: statusPointer
                }
                AppToolTip {
                    text: statusLine.text
                    visible: statusPointer.containsMouse && statusLine.truncated
                }
            }
            ActionButton {
                text: shell.viewModel.buildLabel
                isCompact: shell.isNarrow
                description: "Copies the version"
                onClicked: shell.viewModel.copyBuild()
            }
            RescanButton {
                isCompact: shell.isNarrow
                isScanning: shell.viewModel.isScanning
                onClicked: shell.viewModel.rescan()
                Layout.fillWidth: false
            }
        }

        Divider {
            // How far a scan has come, where that is known.
            Rectangle {
                width: parent.width * Math.max(0, shell.scan.share)
                height: 3
                color: Theme.accent
                visible: shell.scan.share >= 0
                // The status line tells it.
                Accessible.ignored: true
            }
        }

        PageSlot {
            focus: true
            page: shell.pages[shell.viewModel.selectedTab]
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
    }

    readonly property var pages: ({
            "overview": overviewPage,
            "why": whyPage,
            "incidents": incidentsPage,
            "status": statusPage,
            "iCloud": iCloudPage,
            "finder": finderPage,
            "system": systemPage,
            "network": networkPage,
            "storage": storagePage,
            "power": powerPage,
            "performance": performancePage,
            "faq": faqPage,
            "tools": toolsPage
        })

    Component {
        id: overviewPage
        DashboardView {
            context: shell.context
            settings: shell.settings
            onTerminologyRequested: shell.terminologyRequested()
            onBlockersRequested: folder => shell.blockersRequested(folder)
            onCoverageRequested: shell.viewModel.reviewCoverage()
            onExportRequested: shell.exportRequested()
        }
    }
    Component {
        id: whyPage
        SafetyExplainerView {
            context: shell.context
        }
    }
    Component {
        id: incidentsPage
        IncidentCenterView {
            context: shell.context
        }
    }
    Component {
        id: statusPage
        SystemStatusView {
            context: shell.context
        }
    }
    Component {
        id: iCloudPage
        DiagnosticsDomainView {
            context: shell.context
            domain: "iCloud"
        }
    }
    Component {
        id: finderPage
        DiagnosticsDomainView {
            context: shell.context
            domain: "Finder"
        }
    }
    Component {
        id: systemPage
        DiagnosticsDomainView {
            context: shell.context
            domain: "System"
        }
    }
    Component {
        id: networkPage
        DiagnosticsDomainView {
            context: shell.context
            domain: "Network"
        }
    }
    Component {
        id: storagePage
        DiagnosticsDomainView {
            context: shell.context
            domain: "Storage"
        }
    }
    Component {
        id: powerPage
        DiagnosticsDomainView {
            context: shell.context
            domain: "Power"
        }
    }
    Component {
        id: performancePage
        DiagnosticsDomainView {
            context: shell.context
            domain: "Performance"
        }
    }
    Component {
        id: faqPage
        FAQView {
        }
    }
    Component {
        id: toolsPage
        ToolsView {
            context: shell.context
        }
    }
}
