import QtQuick
import QtQuick.Layouts
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 700
    height: 300

    Component {
        id: component

        PremiumTabScaffold {
            id: page

            property int count: 12

            anchors.fill: parent
            title: "Incident Center"
            subtitle: "What has happened."

            Repeater {
                model: page.count

                ActionButton {
                    required property int index
                    text: "Button " + index
                    Layout.preferredHeight: 40
                }
            }
        }
    }

    ComponentCase {
        name: "PremiumTabScaffold"

        function make(properties) {
            const page = createTemporaryObject(component, root, properties || {});
            tryVerify(() => flickable(page).contentHeight > 100);
            return page;
        }

        function flickable(page) {
            return findItem(page, item => item instanceof Flickable);
        }

        function button(page, index) {
            return ScreenReader.find(page, "Button", "Button " + index)
                    || findItem(page, item => item instanceof ActionButton && item.text === "Button " + index);
        }

        function isInSight(page, item) {
            const top = item.mapToItem(flickable(page), 0, 0).y;
            return top >= 0 && top + item.height <= flickable(page).height;
        }

        function test_page_titleAndSubtitle_areHeardFirst() {
            const heard = ScreenReader.heard(make());
            compare(heard[0], "Pane Incident Center");
            compare(heard[1], "Heading Incident Center");
            compare(heard[2], "StaticText What has happened.");
        }

        function test_page_anotherTitle_isHeard() {
            const page = make();
            page.title = "Status";
            compare(ScreenReader.heard(page).slice(0, 2), ["Pane Status", "Heading Status"]);
        }

        function test_page_tabKey_keepsTheFocusInSight() {
            const page = make();
            button(page, 0).forceActiveFocus(Qt.TabFocusReason);
            for (let index = 1; index < page.count; ++index) {
                keyClick(Qt.Key_Tab);
                verify(button(page, index).activeFocus);
                verify(isInSight(page, button(page, index)), "button " + index);
            }
            verify(flickable(page).contentY > 0);
            for (let index = page.count - 2; index >= 0; --index) {
                keyClick(Qt.Key_Backtab);
                verify(isInSight(page, button(page, index)), "button " + index);
            }
        }

        function test_page_keys_scroll() {
            const page = make();
            const area = flickable(page);
            const end = area.contentHeight - area.height;
            page.forceActiveFocus();
            keyClick(Qt.Key_Down);
            compare(area.contentY, 48);
            keyClick(Qt.Key_Up);
            compare(area.contentY, 0);
            keyClick(Qt.Key_PageDown);
            fuzzyCompare(area.contentY, area.height * 0.9, 0.01);
            keyClick(Qt.Key_End);
            compare(area.contentY, end);
            keyClick(Qt.Key_Down);
            compare(area.contentY, end);
            keyClick(Qt.Key_Home);
            compare(area.contentY, 0);
            keyClick(Qt.Key_PageUp);
            compare(area.contentY, 0);
        }

        function test_page_wheel_scrolls() {
            const page = make();
            mouseWheel(page, 300, 150, 0, -120);
            tryVerify(() => flickable(page).contentY > 0);
        }

        function test_page_shortContent_staysWhereItIs() {
            const page = make({count: 1});
            page.forceActiveFocus();
            keyClick(Qt.Key_End);
            compare(flickable(page).contentY, 0);
            verify(!findItem(page, item => item instanceof ScrollIndicator).visible);
        }

        function test_page_longContent_showsWhereItStands() {
            const page = make();
            const indicator = findItem(page, item => item instanceof ScrollIndicator);
            tryVerify(() => indicator.visible);
            verify(indicator.size < 1);
            page.forceActiveFocus();
            keyClick(Qt.Key_End);
            fuzzyCompare(indicator.position + indicator.size, 1, 0.001);
        }

        function test_page_wide_keepsItsColumnReadable() {
            const page = make();
            page.anchors.fill = undefined;
            page.width = 1600;
            const column = button(page, 0).parent;
            tryCompare(column, "width", Theme.pageWidth - 2 * Theme.pagePadding);
            compare(column.x, (1600 - column.width) / 2);
        }
    }
}
