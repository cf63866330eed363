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

        AppBackdropView {
            anchors.fill: parent
            isClassic: false
            motionEnabled: true
        }
    }
    Component {
        id: windowComponent

        Window {
            property alias backdrop: inside

            width: 300
            height: 200

            AppBackdropView {
                id: inside
                anchors.fill: parent
                isClassic: false
                motionEnabled: true
            }
        }
    }

    ComponentCase {
        name: "AppBackdropView"

        function make(properties) {
            return createTemporaryObject(component, root, properties || {});
        }

        function visibleOnes(backdrop, isMet) {
            return findItems(backdrop, item => item.visible && isMet(item)).length;
        }

        function timer(backdrop) {
            return findResource(backdrop, "running");
        }

        function phases(backdrop) {
            return [backdrop.orbOnePhase, backdrop.orbTwoPhase];
        }

        function test_backdrop_liquid_isTwoOrbsOverAGradient() {
            const backdrop = make();
            compare(visibleOnes(backdrop, item => item instanceof SoftOrb), 2);
            compare(visibleOnes(backdrop, item => item instanceof DiagonalGradient), 1);
        }

        function test_backdrop_classic_isAGradientAlone() {
            const backdrop = make({isClassic: true});
            compare(visibleOnes(backdrop, item => item instanceof SoftOrb), 0);
            compare(visibleOnes(backdrop, item => item instanceof DiagonalGradient), 0);
            compare(visibleOnes(backdrop, item => item instanceof Rectangle), 1);
            verify(!timer(backdrop).running);
        }

        function test_backdrop_motionOn_moves() {
            const backdrop = make();
            verify(timer(backdrop).running);
            tryVerify(() => backdrop.orbOnePhase > 0 && backdrop.orbTwoPhase > 0);
        }

        function test_backdrop_motionOff_stands() {
            const backdrop = make({motionEnabled: false});
            verify(!timer(backdrop).running);
            compare(phases(backdrop), [0, 0]);
        }

        function test_backdrop_motionTurnedOff_goesBackAndStands() {
            const backdrop = make();
            tryVerify(() => backdrop.orbOnePhase > 0);
            backdrop.motionEnabled = false;
            compare(phases(backdrop), [0, 0]);
            verify(!timer(backdrop).running);
        }

        function test_backdrop_motionTurnedOnAgain_startsFromItsPlaces() {
            const backdrop = make();
            const once = timer(backdrop);
            for (let step = 0; step < 12; ++step) {
                once.triggered();
            }
            verify(backdrop.orbOnePhase > 0.1);
            backdrop.motionEnabled = false;
            backdrop.motionEnabled = true;
            once.triggered();
            verify(backdrop.orbOnePhase < 0.01 && backdrop.orbTwoPhase < 0.01);
        }

        function test_backdrop_paintedByTheProcessor_movesInFewSteps() {
            compare(timer(make({isPaintedByProcessor: true})).interval, 250);
        }

        function test_backdrop_paintedByAGraphicsCard_movesSmoothly() {
            verify(timer(make({isPaintedByProcessor: false})).interval <= 34);
        }

        function test_backdrop_byTheTestsOwnPainter_isPaintedByTheProcessor() {
            verify(make().isPaintedByProcessor);
        }

        function test_backdrop_turnedClassic_stands() {
            const backdrop = make();
            backdrop.isClassic = true;
            verify(!timer(backdrop).running);
            backdrop.isClassic = false;
            verify(timer(backdrop).running);
        }

        function test_backdrop_windowOutOfSight_stands() {
            const window = createTemporaryObject(windowComponent, root);
            verify(!timer(window.backdrop).running);
            window.show();
            tryVerify(() => timer(window.backdrop).running);
            window.showMinimized();
            tryVerify(() => !timer(window.backdrop).running);
            window.showNormal();
            tryVerify(() => timer(window.backdrop).running);
            window.hide();
            tryVerify(() => !timer(window.backdrop).running);
        }

        function test_backdrop_saysNothing() {
            const holder = make().parent;
            compare(ScreenReader.heard(holder).filter(line => line !== "Client"), []);
        }
    }
}
