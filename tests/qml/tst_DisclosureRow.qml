import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 400
    height: 300

    Component {
        id: component

        DisclosureRow {
            width: 300
            title: "What is it?"
            body: "It is this."
            isExpanded: false
        }
    }
    SignalSpy {
        id: toggles
        signalName: "toggled"
    }

    ComponentCase {
        name: "DisclosureRow"

        function make(properties) {
            const row = createTemporaryObject(component, root, properties || {});
            toggles.target = row;
            toggles.clear();
            return row;
        }

        function heading(row) {
            return ScreenReader.find(row, "Button", row.title);
        }

        function body(row) {
            return findItem(row, item => item instanceof AppText);
        }

        function test_row_closed_hidesItsText() {
            const row = make();
            verify(!body(row).visible);
            compare(ScreenReader.heard(heading(row)), ["Button What is it?"]);
            compare(ScreenReader.description(heading(row)), "Collapsed");
            verify(!ScreenReader.isChecked(heading(row)));
        }

        function test_row_open_showsItsText() {
            const row = make();
            const closed = row.implicitHeight;
            row.isExpanded = true;
            verify(body(row).visible);
            compare(body(row).text, "It is this.");
            tryVerify(() => row.implicitHeight > closed);
            compare(ScreenReader.description(heading(row)), "Expanded");
            verify(ScreenReader.isChecked(heading(row)));
        }

        function test_row_clicked_leavesTheStateToItsOwner() {
            const row = make();
            mouseClick(heading(row));
            compare(toggles.count, 1);
            verify(!row.isExpanded);
            verify(!body(row).visible);
        }

        function test_row_keyOfAButton_isToggled_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_row_keyOfAButton_isToggled(data) {
            const row = make();
            heading(row).forceActiveFocus(Qt.TabFocusReason);
            verify(visibleRing(heading(row)));
            keyClick(data.key);
            compare(toggles.count, 1);
        }

        function test_row_screenReader_toggles() {
            const row = make();
            verify(ScreenReader.press(heading(row)));
            verify(ScreenReader.toggle(heading(row)));
            compare(toggles.count, 2);
        }

        function test_row_longTitle_wrapsAndIsWholeInSight() {
            const row = make({width: 160, title: "Why can the one be high when some of the other are only elsewhere?"});
            const label = findItem(heading(row), item => item instanceof AppLabel);
            tryVerify(() => label.lineCount > 1);
            tryVerify(() => heading(row).height >= label.contentHeight);
            verify(!label.truncated);
        }
    }
}
