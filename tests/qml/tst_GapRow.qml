import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 640
    height: 300

    Component {
        id: component

        GapRow {
            width: 600
            heading: ""
            note: ""
            path: "/Users/test/Work/.env"
            detail: "In Work"
            more: ""
            canReveal: true
            canAcknowledge: true
            canForget: false
            isChanging: false
        }
    }
    SignalSpy {
        id: reveals
        signalName: "revealRequested"
    }
    SignalSpy {
        id: acknowledgements
        signalName: "acknowledged"
    }
    SignalSpy {
        id: forgettings
        signalName: "forgotten"
    }
    SignalSpy {
        id: arrivals
        signalName: "reached"
    }

    ComponentCase {
        name: "GapRow"

        function make(properties) {
            const row = createTemporaryObject(component, root, properties || {});
            for (const spy of [reveals, acknowledgements, forgettings, arrivals]) {
                spy.target = row;
                spy.clear();
            }
            return row;
        }
        function button(row, text) {
            return ScreenReader.find(row, "Button", text);
        }

        function test_firstOfItsKind_isHeardWithHeadingAndNote() {
            const row = make({heading: "Sync Paused (2)", note: "Close the document.", more: "and 3 more"});
            compare(ScreenReader.heard(row),
                    ["Heading Sync Paused (2)", "StaticText Close the document.", "StaticText /Users/test/Work/.env",
                     "StaticText In Work", "Button Reveal in Finder", "Button Acknowledge", "StaticText and 3 more"]);
        }

        function test_otherOfItsKind_hasNoHeading() {
            compare(ScreenReader.heard(make()),
                    ["StaticText /Users/test/Work/.env", "StaticText In Work", "Button Reveal in Finder",
                     "Button Acknowledge"]);
        }

        function test_kindThatIsCountedOnly_hasNoControls() {
            const row = make({heading: "Sync Paused (2)", note: "Close it.", path: "", detail: "", more: "and 2 more"});
            compare(ScreenReader.heard(row),
                    ["Heading Sync Paused (2)", "StaticText Close it.", "StaticText and 2 more"]);
        }

        function test_acknowledgedRow_canBeForgotten() {
            const row = make({canAcknowledge: false, canForget: true});
            mouseClick(button(row, "Forget"));
            compare(forgettings.count, 1);
            verify(!button(row, "Acknowledge"));
        }

        function test_controls_sayWhichItem() {
            const row = make();
            for (const text of ["Reveal in Finder", "Acknowledge"]) {
                compare(button(row, text).description, "/Users/test/Work/.env");
            }
            mouseClick(button(row, "Reveal in Finder"));
            compare(reveals.count, 1);
        }

        function test_acknowledge_asksForHowLong_data() {
            return [{tag: "week", keys: [Qt.Key_Return]}, {tag: "good", keys: [Qt.Key_Down, Qt.Key_Return]}];
        }
        function test_acknowledge_asksForHowLong(data) {
            const row = make();
            button(row, "Acknowledge").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            for (const key of data.keys) {
                keyClick(key);
            }
            tryCompare(acknowledgements, "count", 1);
            compare(acknowledgements.signalArguments[0][0], data.tag);
        }

        function test_changeUnderWay_takesNoOther() {
            verify(!button(make({isChanging: true}), "Acknowledge").enabled);
            verify(!button(make({isChanging: true, canForget: true}), "Forget").enabled);
        }

        function test_keyboard_tellsThatItCame() {
            const row = make();
            row.control.forceActiveFocus(Qt.TabFocusReason);
            compare(arrivals.count, 1);
        }

        function test_longNames_stayWithinTheRow() {
            const row = make({heading: "h".repeat(99), path: "/" + "y".repeat(1000), detail: "In " + "z".repeat(255)});
            const items = findItems(row, item => item instanceof AppText || item instanceof ElidedText
                                    || item instanceof ActionButton).filter(item => item.visible);
            verify(items.length >= 5);
            tryVerify(() => items.every(item => item.mapToItem(row, item.width, 0).x <= row.width + 0.5));
        }
    }
}
