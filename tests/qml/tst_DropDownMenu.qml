import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 600
    height: 400

    ListModel {
        id: threeEntries

        ListElement {
            name: "system"
            title: "System"
            symbol: "desktopcomputer"
        }
        ListElement {
            name: "network"
            title: "Network"
            symbol: "network"
        }
        ListElement {
            name: "storage"
            title: "Storage"
            symbol: "internaldrive.fill"
        }
    }
    ListModel {
        id: otherEntries

        ListElement {
            name: "faq"
            title: "FAQ"
            symbol: "questionmark.circle"
        }
    }
    Component {
        id: component

        DropDownMenu {
            text: "More"
            chosenIndex: 1
            entries: threeEntries
        }
    }
    SignalSpy {
        id: picks
        signalName: "picked"
    }

    ComponentCase {
        name: "DropDownMenu"

        function make(properties) {
            const menu = createTemporaryObject(component, root, properties || {});
            picks.target = menu;
            picks.clear();
            return menu;
        }

        function list() {
            return ScreenReader.find(root.Window.contentItem, "PopupMenu", "More");
        }

        function entry(title) {
            return ScreenReader.find(list(), "MenuItem", title);
        }

        function pickedNames() {
            const names = [];
            for (let index = 0; index < picks.count; ++index) {
                names.push(picks.signalArguments[index][0]);
            }
            return names;
        }

        function open(properties) {
            const menu = make(properties);
            menu.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            tryVerify(() => entry("Storage"));
            return menu;
        }

        function test_menu_clicked_opensAndCloses() {
            const menu = make();
            verify(!list());
            mouseClick(menu);
            tryVerify(() => entry("System"));
            mouseClick(menu);
            tryVerify(() => !list());
            verify(menu.activeFocus);
            compare(picks.count, 0);
        }

        function test_menu_keyToOpen_opensAtTheChosenEntry_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space},
                    {tag: "Down", key: Qt.Key_Down}];
        }

        function test_menu_keyToOpen_opensAtTheChosenEntry(data) {
            make().forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.key);
            tryVerify(() => list() && list().activeFocus);
            verify(entry("Network").highlighted);
        }

        function test_menu_nothingChosen_opensAtTheFirstEntry() {
            open({chosenIndex: -1});
            verify(entry("System").highlighted);
        }

        function test_menu_arrows_walkAround() {
            open();
            keyClick(Qt.Key_Down);
            verify(entry("Storage").highlighted);
            keyClick(Qt.Key_Down);
            verify(entry("System").highlighted);
            keyClick(Qt.Key_Up);
            verify(entry("Storage").highlighted);
            verify(!entry("System").highlighted);
        }

        function test_menu_keyOfAButton_picksTheEntry_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_menu_keyOfAButton_picksTheEntry(data) {
            const menu = open();
            keyClick(Qt.Key_Down);
            keyClick(data.key);
            compare(pickedNames(), ["storage"]);
            tryVerify(() => !list());
            tryVerify(() => menu.activeFocus);
        }

        function test_menu_escape_closesAndPicksNothing() {
            const menu = open();
            keyClick(Qt.Key_Escape);
            tryVerify(() => !list());
            tryVerify(() => menu.activeFocus);
            compare(picks.count, 0);
        }

        function test_menu_entryClicked_isPicked() {
            open();
            mouseClick(entry("System"));
            compare(pickedNames(), ["system"]);
            tryVerify(() => !list());
        }

        function test_menu_pressBesideIt_closes() {
            open();
            mousePress(root, 500, 350);
            mouseRelease(root, 500, 350);
            tryVerify(() => !list());
            compare(picks.count, 0);
        }

        function test_menu_entryPointedAt_isCurrent() {
            open();
            mouseMove(entry("Storage"), 20, 10);
            mouseMove(entry("Storage"), 24, 12);
            tryVerify(() => entry("Storage").highlighted);
            keyClick(Qt.Key_Up);
            verify(entry("Network").highlighted);
        }

        function test_menu_screenReader_opensAndPicks() {
            const menu = make();
            compare(ScreenReader.heard(menu), ["Button More"]);
            verify(ScreenReader.press(menu));
            tryVerify(() => entry("Storage"));
            compare(ScreenReader.heard(list()),
                    ["PopupMenu More", "MenuItem System", "MenuItem Network", "MenuItem Storage"]);
            verify(ScreenReader.press(entry("Storage")));
            compare(pickedNames(), ["storage"]);
            tryVerify(() => !list());
        }

        function test_menu_atTheEdges_staysInTheWindow_data() {
            return [{tag: "left", x: 0, y: 0}, {tag: "right", x: 560, y: 0}, {tag: "below", x: 300, y: 370}];
        }

        function test_menu_atTheEdges_staysInTheWindow(data) {
            open({x: data.x, y: data.y});
            const place = list().mapToItem(root, 0, 0);
            verify(place.x >= 0 && place.x + list().width <= root.width);
            verify(place.y >= 0 && place.y + list().height <= root.height);
        }

        function test_menu_otherEntries_showsThose() {
            const menu = open();
            menu.entries = otherEntries;
            tryVerify(() => entry("FAQ"));
            verify(!entry("System"));
        }
    }
}
