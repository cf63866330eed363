import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

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

        // Before there is anything to show.
        CoverageView {
            context: null
        }
    }

    ComponentCase {
        name: "CoverageView"

        function open() {
            beneath.forceActiveFocus(Qt.TabFocusReason);
            const sheet = createTemporaryObject(component, root);
            sheet.open();
            tryVerify(() => sheet.opened);
            return sheet;
        }

        function test_sheet_open_isADialogWithItsNameAndCommands() {
            const heard = ScreenReader.heard(open().contentItem);
            for (const wanted of ["Dialog Not Vouched For", "Heading Not Vouched For", "Button Look Again", "Button Close"]) {
                verify(heard.includes(wanted), wanted + " in " + heard);
            }
        }

        function test_sheet_closed_givesTheKeyboardBack() {
            const sheet = open();
            const close = ScreenReader.find(sheet.contentItem, "Button", "Close");
            tryVerify(() => close.activeFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => !sheet.visible);
            tryVerify(() => beneath.activeFocus);
        }
    }
}
