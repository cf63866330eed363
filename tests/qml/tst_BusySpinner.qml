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

        BusySpinner {
        }
    }

    ComponentCase {
        name: "BusySpinner"

        function cleanup() {
            Theme.motionEnabled = true;
        }

        function symbol(spinner) {
            return findItem(spinner, item => item instanceof Symbol);
        }

        function timer(spinner) {
            return findResource(symbol(spinner), "running");
        }

        function test_spinner_inSight_turns() {
            const spinner = createTemporaryObject(component, root);
            tryVerify(() => symbol(spinner).rotation > 0);
        }

        function test_spinner_outOfSight_stands() {
            const spinner = createTemporaryObject(component, root);
            verify(timer(spinner).running);
            spinner.visible = false;
            verify(!timer(spinner).running);
        }

        function test_spinner_withoutMotion_stands() {
            Theme.motionEnabled = false;
            verify(!timer(createTemporaryObject(component, root)).running);
        }
    }
}
