import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 200
    height: 100

    Component {
        id: component

        VouchMark {
        }
    }

    ComponentCase {
        name: "VouchMark"

        function test_note_isTheMarksNameForAScreenReader() {
            const mark = createTemporaryObject(component, root, {note: "The verdict does not vouch for 1 item."});
            verify(mark.visible);
            compare(ScreenReader.heard(mark)[0], "Graphic The verdict does not vouch for 1 item.");
        }

        function test_withoutANote_thereIsNoMark() {
            verify(!createTemporaryObject(component, root, {note: ""}).visible);
        }
    }
}
