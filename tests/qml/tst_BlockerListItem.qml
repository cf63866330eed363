import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 760
    height: 300

    ListModel {
        id: blockers
    }
    Component {
        id: component

        ListView {
            id: list
            anchors.fill: parent
            model: blockers
            focus: true
            delegate: BlockerListItem {
                width: list.width
                onPicked: list.currentIndex = index
                onRevealRequested: root.asked.push("reveal " + index)
                onCopyRequested: root.asked.push("copy " + index)
                onMenuRequested: root.asked.push("menu " + index)
            }
        }
    }
    property var asked: []

    ComponentCase {
        name: "BlockerListItem"

        function row(properties) {
            return Object.assign({
                key: "1",
                name: "invoice.pdf",
                reason: "Not Uploaded",
                folderName: "Work",
                path: "/Users/test/Work/invoice.pdf",
                details: "It waits.",
                amount: "1.2 MB · waiting 12 min",
                isStuck: false
            }, properties || {});
        }

        function make(rows) {
            root.asked = [];
            blockers.clear();
            for (const one of rows) {
                blockers.append(one);
            }
            const list = createTemporaryObject(component, root);
            list.forceActiveFocus();
            tryVerify(() => list.currentItem);
            return list;
        }

        function test_row_isHeardAsOne_thenItsButtons() {
            const item = make([row()]).currentItem;
            compare(ScreenReader.heard(item), ["ListItem Not Uploaded: invoice.pdf, 1.2 MB · waiting 12 min",
                                               "Button Reveal in Finder", "Button Copy Path"]);
            compare(ScreenReader.description(item), "Work, /Users/test/Work/invoice.pdf, It waits.");
        }

        function test_stuckRow_saysSo() {
            const item = make([row({isStuck: true, amount: ""})]).currentItem;
            compare(ScreenReader.name(item), "Not Uploaded: invoice.pdf, Stuck");
            verify(findItem(item, child => child instanceof StatusBadge && child.visible && child.text === "Stuck"));
        }

        function test_row_pressed_reveals() {
            verify(ScreenReader.press(make([row()]).currentItem));
            compare(root.asked, ["reveal 0"]);
        }

        function test_buttons_ofAnotherRow_pickItFirst() {
            const list = make([row(), row({key: "2"})]);
            const item = list.itemAtIndex(1);
            mouseClick(ScreenReader.find(item, "Button", "Copy Path"));
            mouseClick(ScreenReader.find(item, "Button", "Reveal in Finder"));
            compare(root.asked, ["copy 1", "reveal 1"]);
            compare(list.currentIndex, 1);
            verify(item.activeFocus);
        }

        function test_rightClick_asksForTheMenu() {
            const list = make([row(), row({key: "2"})]);
            mouseClick(list.itemAtIndex(1), 100, 20, Qt.RightButton);
            compare(root.asked, ["menu 1"]);
        }

        function test_tab_reachesTheCurrentRowsButtonsOnly() {
            const list = make([row(), row({key: "2"})]);
            keyClick(Qt.Key_Tab);
            verify(ScreenReader.find(list.itemAtIndex(0), "Button", "Reveal in Finder").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(ScreenReader.find(list.itemAtIndex(0), "Button", "Copy Path").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(!findItem(list.itemAtIndex(1), child => child.activeFocus));
        }

        function test_longNames_stayWithinTheRow_andAreShownWholeUnderThePointer() {
            const path = "/Users/test/" + "x".repeat(255);
            const item = make([row({name: "x".repeat(255), path: path, folderName: "f".repeat(255), isStuck: true})]).currentItem;
            const buttons = ScreenReader.find(item, "Button", "Reveal in Finder").mapToItem(item, 0, 0).x;
            const labels = findItems(item, child => child instanceof AppLabel && child.mapToItem(item, 0, 0).x < buttons);
            verify(labels.length >= 4);
            tryVerify(() => labels.every(label => label.mapToItem(item, label.width, 0).x <= buttons));
            compare(item.cut, "");
            mouseMove(item, 100, 20);
            tryCompare(item, "cut", path + "\nIt waits.");
        }
    }
}
