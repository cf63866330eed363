import QtQuick
import QtQuick.Layouts
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 700
    height: 300

    ActionButton {
        id: before
        text: "Before"
    }

    Component {
        id: component

        PremiumTabList {
            id: page

            property int count: 200

            anchors.fill: parent
            title: "Incident Center"
            subtitle: "What has happened."
            model: count
            lastControl: filter

            ActionButton {
                id: filter
                text: "Filter"
            }

            delegate: ListRow {
                id: row
                x: page.columnX
                width: page.columnWidth
                heading: "Row " + index
                control: button

                ActionButton {
                    id: button
                    text: "Button " + row.index
                    Keys.onTabPressed: event => page.focusNext(row.index, event)
                    Keys.onBacktabPressed: event => page.focusPrevious(row.index, event)
                }
            }
        }
    }

    ComponentCase {
        name: "PremiumTabList"

        function make(properties) {
            const page = createTemporaryObject(component, root, properties || {});
            tryVerify(() => page.count === 0 || button(page, "Button 0") !== null);
            return page;
        }

        function button(page, text) {
            return findItem(page, item => item instanceof ActionButton && item.text === text);
        }

        function focused(page) {
            const item = findItem(page, item => item instanceof ActionButton && item.activeFocus);
            return item ? item.text : "";
        }

        function isInSight(page, item) {
            const top = item.mapToItem(page.area, 0, 0).y;
            return top >= 0 && top + item.height <= page.area.height;
        }

        function test_page_headingAndContent_standAboveTheRows() {
            const page = make();
            const heard = ScreenReader.heard(page);
            compare(heard.slice(0, 3), ["Pane Incident Center", "Heading Incident Center",
                                        "StaticText What has happened."]);
            const filter = button(page, "Filter");
            const first = button(page, "Button 0");
            verify(filter.mapToItem(page, 0, 0).y < first.mapToItem(page, 0, 0).y);
            compare(filter.mapToItem(page, 0, 0).x, Theme.pagePadding);
            compare(first.mapToItem(page, 0, 0).x, Theme.pagePadding + Theme.cardPadding);
        }

        function test_page_longList_makesOnlyWhatIsNear() {
            const page = make({count: 5000});
            verify(findItems(page, item => item instanceof ListRow).length < 100);
            compare(page.area.count, 5000);
        }

        function test_page_tabKey_goesFromRowToRowInSight() {
            const page = make();
            button(page, "Filter").forceActiveFocus(Qt.TabFocusReason);
            for (let row = 0; row < 40; ++row) {
                keyClick(Qt.Key_Tab);
                compare(focused(page), "Button " + row);
                verify(isInSight(page, button(page, "Button " + row)), "row " + row);
                verify(visibleRing(button(page, "Button " + row)));
            }
            for (let row = 38; row >= 0; --row) {
                keyClick(Qt.Key_Backtab);
                compare(focused(page), "Button " + row);
                verify(isInSight(page, button(page, "Button " + row)), "row " + row);
            }
            keyClick(Qt.Key_Backtab);
            compare(focused(page), "Filter");
            verify(isInSight(page, button(page, "Filter")));
        }

        function test_page_tabKey_leavesAfterTheLastRow() {
            const page = make({count: 30});
            for (const row of [0, 29]) {
                verify(page.focusRow(row, Qt.TabFocusReason));
            }
            keyClick(Qt.Key_Tab);
            verify(before.activeFocus);
            compare(focused(page), "");
        }

        function test_page_tabKeyWithoutRows_leaves() {
            const page = make({count: 0});
            button(page, "Filter").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(before.activeFocus);
        }

        function test_page_focusedRow_staysWhileItIsScrolledAway() {
            const page = make();
            page.focusRow(0, Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            tryVerify(() => page.area.contentY > 1000);
            compare(focused(page), "Button 0");
            keyClick(Qt.Key_Tab);
            compare(focused(page), "Button 1");
            verify(isInSight(page, button(page, "Button 1")));
        }

        function test_page_rowGone_focusGoesToTheOneInItsPlace() {
            const page = make({count: 3});
            page.focusRow(2, Qt.TabFocusReason);
            page.count = 2;
            page.focusInPlaceOf(2, Qt.TabFocusReason);
            compare(focused(page), "Button 1");
            page.count = 0;
            page.focusInPlaceOf(1, Qt.TabFocusReason);
            compare(focused(page), "Filter");
        }

        function test_page_homeAndEnd_showHeadingAndLastRow() {
            const page = make();
            page.forceActiveFocus();
            keyClick(Qt.Key_End);
            tryVerify(() => button(page, "Button 199") !== null);
            tryVerify(() => isInSight(page, button(page, "Button 199")));
            keyClick(Qt.Key_Home);
            tryVerify(() => isInSight(page, button(page, "Filter")));
        }

        function test_page_shortList_staysWhereItIs() {
            const page = make({count: 1});
            page.forceActiveFocus();
            const y = page.area.contentY;
            keyClick(Qt.Key_End);
            compare(page.area.contentY, y);
        }

        function test_page_wide_keepsItsColumnReadable() {
            const page = make();
            page.anchors.fill = undefined;
            page.width = 1600;
            const row = findItem(page, item => item instanceof ListRow);
            tryCompare(row, "width", Theme.pageWidth - 2 * Theme.pagePadding);
            compare(row.x, (1600 - row.width) / 2);
        }
    }
}
