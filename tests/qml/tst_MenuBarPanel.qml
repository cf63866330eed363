import QtQuick
import QtTest
import Cirrovane

TestCase {
    name: "MenuBarPanel"

    Component {
        id: panel
        MenuBarPanel {
        }
    }

    // Without anything to show; it is made and never shown.
    function test_beforeItIsShown_staysInSightOfAMac() {
        const made = panel.createObject(null, {
            snapshot: null,
            settings: null,
            leaving: null,
            commands: null,
            hasMenuBar: false
        });
        verify(!made.visible);
        compare(made._q_macAlwaysShowToolWindow, true);
        compare(made.flags & Qt.Tool, Qt.Tool);
        made.destroy();
    }
}
