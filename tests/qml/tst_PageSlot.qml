import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 400
    height: 300

    property string word: "one"

    Component {
        id: first

        PremiumTabScaffold {
            title: "First " + root.word
            subtitle: ""
        }
    }
    Component {
        id: second

        PremiumTabScaffold {
            title: "Second " + root.word
            subtitle: ""
        }
    }
    Component {
        id: component

        PageSlot {
            width: 400
            height: 300
            page: first
        }
    }

    ComponentCase {
        name: "PageSlot"

        function cleanup() {
            root.word = "one";
        }

        function make() {
            const slot = createTemporaryObject(component, root);
            tryVerify(() => slot.shown);
            return slot;
        }

        function panes(slot) {
            return ScreenReader.heard(slot).filter(line => line.startsWith("Pane"));
        }

        function test_slot_showsItsPageOverItsWholeArea() {
            const slot = make();
            compare(panes(slot), ["Pane First one"]);
            compare([slot.shown.width, slot.shown.height], [400, 300]);
            slot.width = 200;
            compare(slot.shown.width, 200);
        }

        function test_slot_windowHasNotDrawn_hasNoPageYet() {
            const slot = createTemporaryObject(component, root);
            compare(slot.shown, null);
            slot.page = second;
            compare(slot.shown, null);
            tryVerify(() => slot.shown);
            compare(panes(slot), ["Pane Second one"]);
        }

        function test_slot_anotherPage_takesTheFirstOnesPlace() {
            const slot = make();
            slot.page = second;
            compare(panes(slot), ["Pane Second one"]);
            tryVerify(() => slot.children.length === 1);
        }

        function test_slot_page_followsWhatItIsBoundTo() {
            const slot = make();
            root.word = "two";
            compare(panes(slot), ["Pane First two"]);
        }
    }
}
