import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 400
    height: 100

    Component {
        id: component

        SearchField {
            label: "Search names"
        }
    }

    ComponentCase {
        name: "SearchField"

        function make() {
            const field = createTemporaryObject(component, root);
            field.forceActiveFocus();
            return field;
        }

        function placeholder(field) {
            return findItem(field, item => item instanceof AppLabel && item.text === "Search names" && item.visible);
        }

        function test_field_isHeardByItsLabel() {
            const field = make();
            compare(ScreenReader.name(field), "Search names");
            verify(!ScreenReader.find(field, "Button", "Clear Search"));
        }

        function test_field_typed_holdsTheText() {
            const field = make();
            verify(placeholder(field));
            keyClick("a");
            keyClick("b");
            compare(field.text, "ab");
            verify(!placeholder(field));
        }

        function test_clear_emptiesAndKeepsTheKeyboard() {
            const field = make();
            field.text = "abc";
            mouseClick(ScreenReader.find(field, "Button", "Clear Search"));
            compare(field.text, "");
            verify(field.activeFocus);
        }

        function test_clear_isReachedByTab() {
            const field = make();
            field.text = "abc";
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Space);
            compare(field.text, "");
        }
    }
}
