import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 600
    height: 200

    ListModel {
        id: styles

        ListElement {
            title: "Liquid"
            value: "liquid"
        }
        ListElement {
            title: "Classic"
            value: "classic"
        }
        ListElement {
            title: "None at all"
            value: "none"
        }
    }
    Component {
        id: component

        Item {
            id: owner

            property string style: "liquid"
            // Whether it takes over what is chosen.
            property bool follows: true
            property var wanted: []
            readonly property SegmentedControl control: segments

            function segment(title) {
                return ScreenReader.find(segments, "RadioButton", title);
            }

            function checkedTitles() {
                return ["Liquid", "Classic", "None at all"].filter(title => ScreenReader.isChecked(segment(title)));
            }

            width: 500
            height: 100

            SegmentedControl {
                id: segments
                choices: styles
                value: owner.style
                label: "Visual style"
                onChosen: value => {
                    owner.wanted = owner.wanted.concat([value]);
                    if (owner.follows) {
                        owner.style = value;
                    }
                }
            }
            ActionButton {
                anchors.top: segments.bottom
                text: "After"
            }
        }
    }

    ComponentCase {
        name: "SegmentedControl"

        function make(properties) {
            return createTemporaryObject(component, root, properties || {});
        }

        function test_segments_clicked_choose() {
            const owner = make();
            compare(owner.checkedTitles(), ["Liquid"]);
            mouseClick(owner.segment("Classic"));
            compare(owner.wanted, ["classic"]);
            compare(owner.checkedTitles(), ["Classic"]);
        }

        function test_segments_ownerThatDoesNotFollow_stayAsItSays() {
            const owner = make({follows: false});
            mouseClick(owner.segment("Classic"));
            mouseClick(owner.segment("Classic"));
            mouseClick(owner.segment("None at all"));
            compare(owner.wanted, ["classic", "classic", "none"]);
            compare(owner.checkedTitles(), ["Liquid"]);
            verify(owner.segment("Liquid").checked);
            verify(!owner.segment("Classic").checked);
        }

        function test_segments_ownerChoosesAfterAClick_follow() {
            const owner = make();
            mouseClick(owner.segment("Classic"));
            owner.style = "none";
            compare(owner.checkedTitles(), ["None at all"]);
            owner.style = "liquid";
            compare(owner.checkedTitles(), ["Liquid"]);
        }

        function test_segments_valueOfNone_showNoneChosen() {
            compare(make({style: "other"}).checkedTitles(), []);
        }

        function test_segments_arrows_walk() {
            const owner = make();
            owner.segment("Liquid").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            verify(owner.segment("Classic").activeFocus);
            verify(visibleRing(owner.segment("Classic")));
            keyClick(Qt.Key_Right);
            verify(owner.segment("None at all").activeFocus);
            keyClick(Qt.Key_Left);
            verify(owner.segment("Classic").activeFocus);
            compare(owner.wanted, []);
        }

        function test_segments_arrowsAtTheEnds_stayInside() {
            const owner = make();
            owner.segment("None at all").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            verify(owner.control.activeFocus);
            owner.segment("Liquid").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Left);
            verify(owner.control.activeFocus);
        }

        function test_segments_keyOfAButton_choose_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_segments_keyOfAButton_choose(data) {
            const owner = make();
            owner.segment("Classic").forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.key);
            compare(owner.wanted, ["classic"]);
            compare(owner.checkedTitles(), ["Classic"]);
        }

        function test_segments_heard_areRadioButtonsOfAGroup() {
            compare(ScreenReader.heard(make().control),
                    ["Grouping Visual style", "RadioButton Liquid", "RadioButton Classic", "RadioButton None at all"]);
        }

        function test_segments_pressedByAScreenReader_choose() {
            const owner = make();
            verify(ScreenReader.press(owner.segment("Classic")));
            compare(owner.wanted, ["classic"]);
            compare(owner.checkedTitles(), ["Classic"]);
            verify(ScreenReader.toggle(owner.segment("None at all")));
            compare(owner.wanted, ["classic", "none"]);
            compare(owner.checkedTitles(), ["None at all"]);
        }

        function test_segments_longTitle_hasTheRoomItNeeds() {
            const owner = make();
            const segment = owner.segment("None at all");
            verify(!findItem(segment, item => item instanceof AppLabel).truncated);
            compare(owner.segment("Liquid").width, 64);
        }
    }
}
