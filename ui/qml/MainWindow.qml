pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Cirrovane

// The main window with its menu bar and shortcuts.
ApplicationWindow {
    id: window

    required property ShellViewModel shell
    required property AppSettings settings
    required property ScanStatus scan
    required property PageContext context
    required property MenuCommands commands
    // Whether the menus are in the window.
    required property bool hasMenuBar

    title: "Cirrovane"
    width: 1120
    height: 800
    minimumWidth: 860
    // The content's, with the menu bar above it.
    minimumHeight: 700 + (menuBar ? menuBar.height : 0)
    color: Theme.liquidBottom

    // Made at their first use, since they take longer than the tab bar.
    property var guide: null
    property var about: null
    // Goes when it is closed, since it may hold very many rows.
    property var blockers: null
    property var coverage: null
    property var preferences: null
    property var evidence: null
    property var question: null
    readonly property bool hasOpenSheet: (guide?.opened ?? false) || (about?.opened ?? false)
                                         || (blockers?.opened ?? false) || (coverage?.opened ?? false)
                                         || (preferences?.opened ?? false) || (evidence?.opened ?? false)
                                         || (question?.opened ?? false)

    // The text that had the keyboard last. A menu that opens takes the keyboard and leaves the selection.
    property TextEdit text: null
    readonly property bool canCopy: text instanceof ElidedText || (text?.selectedText ?? "") !== ""
    onActiveFocusItemChanged: if (activeFocusItem instanceof TextEdit) text = activeFocusItem as TextEdit

    // A name or path knows what its mark stands for.
    function copy() {
        if (text instanceof ElidedText) {
            (text as ElidedText).copyWhole();
        } else {
            text.copy();
        }
    }
    function showGuide() {
        guide = guide ?? guideComponent.createObject(contentItem);
        guide.open();
    }
    function showCoverage() {
        coverage = coverage ?? coverageComponent.createObject(contentItem);
        coverage.open();
    }
    function showAbout() {
        about = about ?? aboutComponent.createObject(contentItem);
        about.open();
    }

    function showBlockers(folder) {
        blockers?.destroy();
        blockers = blockersComponent.createObject(contentItem, {
            folder: folder
        });
        blockers.open();
    }

    function showSettings() {
        preferences = preferences ?? settingsComponent.createObject(contentItem);
        preferences.open();
    }

    function showExport() {
        evidence = evidence ?? exportComponent.createObject(contentItem);
        evidence.open();
    }

    Connections {
        target: window.context.leaving
        function onChanged() {
            if (window.context.leaving.canWait) {
                window.question = window.question ?? questionComponent.createObject(window.contentItem);
                window.question.open();
            } else if (!window.context.leaving.isAsked) {
                window.question?.close();
            }
        }
    }

    onVisibleChanged: if (visible) arrival.restart()

    // The scan's threads would share the processor with the window's first picture.
    Timer {
        id: arrival
        interval: 100
        onTriggered: window.shell.appeared()
    }

    Binding {
        target: Theme
        property: "isClassic"
        value: window.settings.isClassic
    }
    Binding {
        target: Theme
        property: "motionEnabled"
        value: window.settings.motionAllowed
    }

    menuBar: Loader {
        // By its file, since Qt 6.4 loads no component of this one here.
        Component.onCompleted: {
            if (window.hasMenuBar) {
                setSource("WindowMenuBar.qml", {
                    shell: window.shell,
                    commands: window.commands
                });
            }
        }
    }

    // An open sheet takes the key that closes the window.
    CommandState {
        command: "closeWindow"
        isEnabled: window.visible && !window.hasOpenSheet
    }
    CommandState {
        command: "minimize"
        isEnabled: window.visible
    }
    CommandState {
        command: "copy"
        isEnabled: window.canCopy
    }
    CommandState {
        command: "selectAll"
        isEnabled: window.text !== null
    }
    Connections {
        target: window.commands
        function onTriggered(command, name) {
            switch (name) {
            case "about":
                window.showAbout();
                break;
            case "settings":
                window.showSettings();
                break;
            case "copy":
                window.copy();
                break;
            case "selectAll":
                window.text.forceActiveFocus(Qt.PopupFocusReason);
                window.text.selectAll();
                break;
            case "minimize":
                window.showMinimized();
                break;
            case "terminologyGuide":
                window.showGuide();
                break;
            case "faq":
                window.shell.selectedTab = "faq";
                break;
            }
        }
    }

    Connections {
        target: window.shell
        function onCoverageRequested() {
            window.showCoverage();
        }
    }

    Repeater {
        model: window.shell.primaryTabs

        Item {
            id: tab
            required property int index
            required property string name

            Shortcut {
                sequence: "Ctrl+" + (tab.index + 1)
                onActivated: window.shell.selectedTab = tab.name
            }
        }
    }

    MainTabShellView {
        anchors.fill: parent
        viewModel: window.shell
        settings: window.settings
        scan: window.scan
        context: window.context
        onTerminologyRequested: window.showGuide()
        onBlockersRequested: folder => window.showBlockers(folder)
        onExportRequested: window.showExport()
    }

    Component {
        id: guideComponent
        TerminologyGuideView {
        }
    }
    Component {
        id: aboutComponent
        AboutView {
            buildLabel: window.shell.buildLabel
        }
    }

    Component {
        id: blockersComponent
        AllBlockersView {
            context: window.context
            onClosed: {
                window.blockers = null;
                destroy();
            }
        }
    }

    Component {
        id: coverageComponent
        CoverageView {
            context: window.context
        }
    }

    Component {
        id: exportComponent
        ExportView {
            context: window.context
        }
    }

    Component {
        id: questionComponent
        LeaveQuestionView {
            leaving: window.context.leaving
        }
    }

    Component {
        id: settingsComponent
        SettingsView {
            settings: window.settings
        }
    }

    component CommandState: QtObject {
        required property string command
        required property bool isEnabled
        onIsEnabledChanged: window.commands.setEnabled(command, isEnabled)
        Component.onCompleted: window.commands.setEnabled(command, isEnabled)
    }
}
