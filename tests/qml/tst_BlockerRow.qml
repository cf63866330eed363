import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 400
    height: 300

    Component {
        id: component

        BlockerRow {
            width: 360
            reason: "Cloud-Only (Not Local)"
            folderName: "Work"
            path: "/Users/test/Work/invoice.pdf"
            details: "File is only available in iCloud and not on this Mac."
        }
    }
    SignalSpy {
        id: reveals
        signalName: "revealRequested"
    }

    ComponentCase {
        name: "BlockerRow"

        function make(properties) {
            const row = createTemporaryObject(component, root, properties || {});
            reveals.target = row;
            reveals.clear();
            return row;
        }

        function test_row_isHeardInOrder() {
            compare(ScreenReader.heard(make()).slice(1),
                    ["StaticText Cloud-Only (Not Local)", "StaticText Work", "StaticText /Users/test/Work/invoice.pdf",
                     "StaticText File is only available in iCloud and not on this Mac.", "Button Reveal in Finder"]);
        }

        function test_button_saysWhichFile() {
            const button = ScreenReader.find(make(), "Button", "Reveal in Finder");
            compare(button.description, "/Users/test/Work/invoice.pdf");
        }

        function test_button_clicked_asksOnce() {
            mouseClick(ScreenReader.find(make(), "Button", "Reveal in Finder"));
            compare(reveals.count, 1);
        }

        function test_longNames_stayWithinTheRow() {
            const row = make({folderName: "x".repeat(255), path: "/" + "y".repeat(255), details: "z".repeat(255)});
            const texts = findItems(row, item => item instanceof AppText || item instanceof ElidedText);
            compare(texts.length, 4);
            tryVerify(() => texts.every(text => text.mapToItem(row, text.width, 0).x <= row.width + 0.5));
        }
    }
}
