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

        FilePathText {
            x: 20
            y: 20
            path: "/Users/test/a.txt"
        }
    }

    ComponentCase {
        name: "FilePathText"

        readonly property string longPath: "/Users/test/Library/Mobile Documents/" + "x".repeat(255) + "/invoice.pdf"

        function make(path, width) {
            const label = createTemporaryObject(component, root, {path: path, width: width});
            tryVerify(() => label.width === width);
            return label;
        }

        function toolTip(label) {
            return findResource(label, "delay");
        }

        function test_path_thatFits_isWholeAndNeedsNoToolTip() {
            const label = make("/Users/test/a.txt", 300);
            verify(!label.truncated);
            mouseMove(label, 10, 5);
            verify(!toolTip(label).visible);
        }

        function test_path_tooLong_isHeardWhole() {
            const label = make(longPath, 300);
            verify(label.truncated);
            compare(label.elide, Text.ElideMiddle);
            compare(ScreenReader.name(label), longPath);
            compare(label.Accessible.description, longPath);
        }

        function test_path_tooLong_isWholeInItsToolTip() {
            const label = make(longPath, 300);
            mouseMove(label, 10, 5);
            tryVerify(() => toolTip(label).visible);
            compare(toolTip(label).text, longPath);
            verify(toolTip(label).width <= root.Window.width);
            mouseMove(root, 390, 290);
            tryVerify(() => !toolTip(label).visible);
        }

        function test_path_isPlainText() {
            compare(make("/<b>bold</b>", 300).textFormat, TextEdit.PlainText);
        }

        TextEdit {
            id: pasteboard
            visible: false
        }

        function pasted() {
            pasteboard.clear();
            pasteboard.paste();
            return pasteboard.text;
        }

        function test_copy_nothingSelected_takesTheWhole() {
            const label = make(longPath, 300);
            label.forceActiveFocus();
            keyClick(Qt.Key_C, Qt.ControlModifier);
            compare(pasted(), longPath);
        }

        function test_copy_selectionOverTheMark_takesWhatItStandsFor() {
            const label = make(longPath, 300);
            label.forceActiveFocus();
            label.select(5, label.text.length - 3);
            keyClick(Qt.Key_C, Qt.ControlModifier);
            compare(pasted(), longPath.slice(5, -3));
        }

        function test_copy_selectionBeforeTheMark_takesThat() {
            const label = make(longPath, 300);
            label.forceActiveFocus();
            label.select(1, 6);
            keyClick(Qt.Key_C, Qt.ControlModifier);
            compare(pasted(), "Users");
        }

        function test_menu_byKey_copiesThePath() {
            const label = make(longPath, 300);
            label.forceActiveFocus();
            keyClick(Qt.Key_F10, Qt.ShiftModifier);
            keyClick(Qt.Key_Return);
            compare(pasted(), longPath);
            tryVerify(() => label.activeFocus);
        }

        function test_menu_byPointer_copiesThePath() {
            const label = make("/Users/test/b.txt", 300);
            mouseClick(label, 10, 5, Qt.RightButton);
            keyClick(Qt.Key_Return);
            compare(pasted(), "/Users/test/b.txt");
        }
    }
}
