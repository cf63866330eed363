import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 300
    height: 100

    Component {
        id: component

        RescanButton {
            isScanning: false
        }
    }

    ComponentCase {
        name: "RescanButton"

        function cleanup() {
            Theme.motionEnabled = true;
        }

        function make(properties) {
            return createTemporaryObject(component, root, properties || {});
        }

        function test_scan_begins_keepsTheWidth_data() {
            return [{tag: "symbol", symbolName: "arrow.clockwise"}, {tag: "no symbol", symbolName: ""}];
        }

        function test_scan_begins_keepsTheWidth(data) {
            const row = make({symbolName: data.symbolName});
            const [width, place] = [row.implicitWidth, row.control.x];
            row.isScanning = true;
            waitForRendering(row);
            compare(row.implicitWidth, width);
            compare(row.control.x, place);
        }

        function test_scan_withMotion_turnsTheSymbolUntilItEnds() {
            const row = make({isScanning: true});
            tryVerify(() => row.control.symbolAngle > 0);
            row.isScanning = false;
            compare(row.control.symbolAngle, 0);
        }

        function test_scan_withoutMotion_showsAnotherSymbol() {
            Theme.motionEnabled = false;
            const row = make();
            compare(row.control.symbolName, "arrow.clockwise");
            row.isScanning = true;
            compare(row.control.symbolName, "ellipsis.circle");
            compare(row.control.symbolAngle, 0);
        }

        function test_scan_isHeard() {
            const row = make();
            compare(row.control.description, "");
            row.isScanning = true;
            compare(row.control.description, "A scan is running");
        }
    }
}
