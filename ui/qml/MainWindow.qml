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

    title: "Cirrovane"
    width: 1120
    height: 800
    minimumWidth: 860
    minimumHeight: 700
    color: Theme.liquidBottom

    // Made when it is first wanted, since it takes longer than the tab bar.
    property var guide: null

    signal quitRequested

    function showGuide() {
        guide = guide ?? guideComponent.createObject(contentItem);
        guide.open();
    }

    // Without types: Qt 6.4 hands no colour over to C++ from a function that has them.
    function stateColor(state) {
        return Theme.stateColor(state);
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

    menuBar: WindowMenuBar {
        shell: window.shell
        closesWindow: !(window.guide?.opened ?? false)
        onCloseRequested: window.close()
        onMinimizeRequested: window.showMinimized()
        onQuitRequested: window.quitRequested()
        onTerminologyRequested: window.showGuide()
    }

    Repeater {
        model: window.shell.primaryTabs

        Item {
            id: tab
            required property var modelData
            required property int index

            Shortcut {
                sequence: "Ctrl+" + (tab.index + 1)
                onActivated: window.shell.selectedTab = tab.modelData.id
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
}
