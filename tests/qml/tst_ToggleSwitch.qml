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

        Item {
            id: owner

            property bool setting: false
            // Whether it takes over what is switched.
            property bool follows: true
            property var wanted: []
            property alias showsLabel: toggle.showsLabel
            readonly property ToggleSwitch control: toggle

            ToggleSwitch {
                id: toggle
                text: "Notifications"
                isOn: owner.setting
                onSwitched: on => {
                    owner.wanted = owner.wanted.concat([on]);
                    if (owner.follows) {
                        owner.setting = on;
                    }
                }
            }
        }
    }

    ComponentCase {
        name: "ToggleSwitch"

        function make(properties) {
            return createTemporaryObject(component, root, properties || {});
        }

        function test_switch_clickedTwice_goesOnAndOff() {
            const owner = make();
            mouseClick(owner.control);
            verify(ScreenReader.isChecked(owner.control));
            mouseClick(owner.control);
            verify(!ScreenReader.isChecked(owner.control));
            compare(owner.wanted, [true, false]);
        }

        function test_switch_ownerThatDoesNotFollow_staysAsItSays() {
            const owner = make({follows: false});
            mouseClick(owner.control);
            mouseClick(owner.control);
            compare(owner.wanted, [true, true]);
            verify(!owner.control.checked);
            verify(!ScreenReader.isChecked(owner.control));
        }

        function test_switch_ownerChangesAfterAClick_follows() {
            const owner = make();
            mouseClick(owner.control);
            owner.setting = false;
            verify(!owner.control.checked);
            owner.setting = true;
            verify(owner.control.checked);
            compare(owner.wanted, [true]);
        }

        function test_switch_keyOfAButton_switches_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_switch_keyOfAButton_switches(data) {
            const owner = make();
            owner.control.forceActiveFocus(Qt.TabFocusReason);
            verify(visibleRing(owner.control));
            keyClick(data.key);
            compare(owner.wanted, [true]);
            keyClick(data.key);
            compare(owner.wanted, [true, false]);
        }

        function test_switch_pressedByAScreenReader_switches() {
            const owner = make();
            compare(ScreenReader.heard(owner.control), ["CheckBox Notifications"]);
            verify(ScreenReader.press(owner.control));
            compare(owner.wanted, [true]);
            verify(ScreenReader.toggle(owner.control));
            compare(owner.wanted, [true, false]);
        }

        function test_switch_withoutItsLabel_isHeardByIt() {
            const owner = make({showsLabel: false});
            compare(owner.control.width, 38);
            compare(ScreenReader.name(owner.control), "Notifications");
        }

        function test_switch_withItsLabel_hasRoomForIt() {
            const control = make().control;
            const label = findItem(control, item => item instanceof AppLabel);
            verify(!label.truncated);
            compare(control.width, label.implicitWidth + 10 + 38);
            compare(control.indicator.x, control.width - 38);
            compare(control.indicator.height, 22);
        }

        function test_switch_on_isGreen() {
            const owner = make();
            compare(owner.control.indicator.color, Theme.controlPressed);
            owner.setting = true;
            compare(owner.control.indicator.color, Theme.green);
        }
    }
}
