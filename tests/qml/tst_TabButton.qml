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

        TabButton {
            text: "Status"
            symbolName: "waveform.path.ecg"
            isChosen: false
        }
    }
    SignalSpy {
        id: clicks
        signalName: "clicked"
    }

    ComponentCase {
        name: "TabButton"

        function make(properties) {
            const button = createTemporaryObject(component, root, properties || {});
            clicks.target = button;
            clicks.clear();
            return button;
        }

        function test_tab_clicked_staysAsItsOwnerSays() {
            const button = make();
            mouseClick(button);
            compare(clicks.count, 1);
            verify(!ScreenReader.isSelected(button));
            button.isChosen = true;
            verify(ScreenReader.isSelected(button));
        }

        function test_tab_keyOfAButton_isPressed_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_tab_keyOfAButton_isPressed(data) {
            make().forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.key);
            compare(clicks.count, 1);
        }

        function test_tab_pressedByAScreenReader_isPressed() {
            const button = make();
            compare(ScreenReader.heard(button), ["PageTab Status"]);
            verify(ScreenReader.press(button));
            compare(clicks.count, 1);
        }

        function test_tab_chosen_standsOnACapsule() {
            compare(make().background.color.a, 0);
            const chosen = make({isChosen: true}).background;
            compare(chosen.color, Theme.selectedFill);
            compare(chosen.radius, chosen.height / 2);
        }
    }
}
