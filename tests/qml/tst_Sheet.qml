import QtQuick
import QtTest
import Cirrovane

Item {
    id: root
    width: 700
    height: 500

    ActionButton {
        id: beneath
        text: "Beneath"
        focus: true
    }

    Component {
        id: component

        Sheet {
            id: sheet
            title: "Guide"

            ActionButton {
                text: "Close"
                focus: true
                onClicked: sheet.close()
            }
        }
    }
    SignalSpy {
        id: clicksBeneath
        target: beneath
        signalName: "clicked"
    }

    ComponentCase {
        name: "Sheet"

        function open() {
            beneath.forceActiveFocus(Qt.TabFocusReason);
            clicksBeneath.clear();
            const sheet = createTemporaryObject(component, root);
            verify(!sheet.visible);
            sheet.open();
            tryVerify(() => sheet.opened);
            return sheet;
        }

        function test_sheet_open_hasTheKeyboard() {
            const sheet = open();
            tryVerify(() => sheet.activeFocus);
            verify(!beneath.activeFocus);
        }

        function test_sheet_escape_closes() {
            const sheet = open();
            keyClick(Qt.Key_Escape);
            tryVerify(() => !sheet.visible);
            tryVerify(() => beneath.activeFocus);
        }

        function test_sheet_closingShortcut_closes() {
            const sheet = open();
            keySequence(StandardKey.Close);
            tryVerify(() => !sheet.visible);
        }

        function test_sheet_closed_leavesTheShortcutToOthers() {
            const sheet = open();
            const shortcut = createTemporaryQmlObject("import QtQuick; Shortcut { sequences: [StandardKey.Close] }", root);
            const spy = createTemporaryQmlObject("import QtTest; SignalSpy { signalName: 'activated' }", root);
            spy.target = shortcut;
            sheet.close();
            tryVerify(() => !sheet.visible);
            keySequence(StandardKey.Close);
            compare(spy.count, 1);
        }

        function test_sheet_buttonInIt_closes() {
            const sheet = open();
            tryVerify(() => sheet.activeFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => !sheet.visible);
        }

        function test_sheet_open_keepsTheMouseFromWhatIsBeneath() {
            const sheet = open();
            mouseClick(root, 5, 5);
            compare(clicksBeneath.count, 0);
            verify(sheet.opened);
        }

        function test_sheet_open_keepsTheTabKeyInside() {
            const sheet = open();
            tryVerify(() => sheet.activeFocus);
            keyClick(Qt.Key_Tab);
            verify(sheet.activeFocus);
        }

        function test_sheet_staysWithinTheWindow_andInItsMiddle() {
            const sheet = open();
            compare(sheet.width, 560);
            compare(sheet.height, 500 - 48);
            compare(sheet.x, (700 - 560) / 2);
            compare(sheet.y, 24);
        }
    }
}
