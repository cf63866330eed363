pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Cirrovane

// The main window with its menu bar and shortcuts.
ApplicationWindow {
    id: window

    required property ShellViewModel shell
    required property AppSettings settings
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
    property var coverage: null

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
        isEnabled: window.visible && !(window.guide?.opened ?? false) && !(window.about?.opened ?? false)
                   && !(window.coverage?.opened ?? false)
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
            case "closeWindow":
                window.close();
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
        context: window.context
        onTerminologyRequested: window.showGuide()
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
        id: coverageComponent
        CoverageView {
            context: window.context
        }
    }

    component CommandState: QtObject {
        required property string command
        required property bool isEnabled
        onIsEnabledChanged: window.commands.setEnabled(command, isEnabled)
        Component.onCompleted: window.commands.setEnabled(command, isEnabled)
    }
}
