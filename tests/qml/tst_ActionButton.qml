import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 400
    height: 200

    Component {
        id: component

        ActionButton {
            text: "Copy"
        }
    }
    SignalSpy {
        id: clicks
        signalName: "clicked"
    }

    ComponentCase {
        name: "ActionButton"

        function make(properties) {
            const button = createTemporaryObject(component, root, properties || {});
            clicks.target = button;
            clicks.clear();
            return button;
        }

        function test_button_clicked_isPressed() {
            mouseClick(make());
            compare(clicks.count, 1);
        }

        function test_button_keyOfAButton_isPressed_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_button_keyOfAButton_isPressed(data) {
            make().forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.key);
            compare(clicks.count, 1);
        }

        function test_button_anotherKey_isNotPressed() {
            make().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_A);
            compare(clicks.count, 0);
        }

        function test_button_pressedByAScreenReader_isPressed() {
            verify(ScreenReader.press(make()));
            compare(clicks.count, 1);
        }

        function test_button_disabled_cannotBePressed() {
            const button = make({enabled: false});
            mouseClick(button);
            ScreenReader.press(button);
            compare(clicks.count, 0);
            verify(button.opacity < 1);
        }

        function test_button_isHeardAsOneButton() {
            const button = make({symbolName: "arrow.clockwise", description: "Copies the text"});
            compare(ScreenReader.heard(button), ["Button Copy"]);
            compare(ScreenReader.description(button), "Copies the text");
        }

        function test_button_reachedByKeyboard_showsTheRing() {
            const button = make();
            button.forceActiveFocus(Qt.TabFocusReason);
            verify(visibleRing(button));
        }

        function test_button_reachedByMouse_showsNoRing() {
            const button = make();
            mouseClick(button);
            verify(button.activeFocus);
            verify(!visibleRing(button));
        }

        function test_button_withASymbol_isWiderByIt() {
            const plain = make().width;
            const button = make({symbolName: "arrow.clockwise"});
            verify(button.width > plain);
            const symbol = findItem(button, item => item instanceof Symbol);
            verify(symbol.visible);
            tryCompare(symbol, "status", Image.Ready);
        }

        function test_button_withoutAText_isItsSymbol() {
            const button = make({text: "", symbolName: "trash"});
            const label = findItem(button, item => item instanceof AppLabel);
            verify(!label.visible);
            compare(button.width, 15 + 2 * Theme.controlPadding);
        }

        function test_button_widerThanItsContent_centresIt() {
            const button = make({width: 300, symbolName: "trash"});
            const parts = findItem(button, item => item instanceof AppLabel).parent;
            fuzzyCompare(parts.mapToItem(button, 0, 0).x, (300 - parts.width) / 2, 1);
        }

        function test_button_plain_hasNoBorder() {
            compare(make().background.border.width, 1);
            compare(make({isPlain: true}).background.border.width, 0);
        }

        function test_button_pointedAt_isLighter() {
            const button = make();
            compare(button.background.color, Theme.controlFill);
            mouseMove(button, 10, 10);
            tryCompare(button.background, "color", Theme.controlHover);
        }
    }
}
