import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 300
    height: 300

    Component {
        id: component

        ScoreDialView {
            score: 90
            tone: Tone.Good
            motionEnabled: true
        }
    }

    ComponentCase {
        name: "ScoreDialView"

        function make(properties) {
            return createTemporaryObject(component, root, properties || {});
        }

        function ring(dial) {
            return findItem(dial, item => item instanceof ScoreRing);
        }

        function number(dial) {
            return findItem(dial, item => item instanceof AppLabel).text;
        }

        function test_dial_isHeardAsOneThing() {
            compare(ScreenReader.heard(make()), ["StaticText Upload Trust 90"]);
        }

        function test_dial_newScore_isHeardAtOnceAndSeenLater() {
            const dial = make();
            dial.score = 12;
            compare(ScreenReader.name(dial), "Upload Trust 12");
            compare(number(dial), "90");
            tryVerify(() => number(dial) === "12");
        }

        function test_dial_motionOff_showsTheNewScoreAtOnce() {
            const dial = make({motionEnabled: false});
            dial.score = 12;
            compare(number(dial), "12");
            compare(ring(dial).progress, 12);
        }

        function test_dial_outOfSight_showsTheNewScoreAtOnce() {
            const dial = make({visible: false});
            dial.score = 12;
            compare(number(dial), "12");
        }

        function test_dial_tone_isTheRings() {
            compare(ring(make({tone: Tone.Caution})).tone, Tone.Caution);
        }

        function test_dial_glow_reachesBeyondIt() {
            const dial = make();
            compare(dial.width, 160);
            verify(ring(dial).width > 160);
            compare(ring(dial).x + ring(dial).width / 2, 80);
        }

        function test_dial_small_keepsItsTextsInside() {
            const dial = make({dialSize: 80, strokeWidth: 8, score: 100});
            for (const label of findItems(dial, item => item instanceof AppLabel)) {
                verify(label.contentWidth <= 80 - 2 * 8, label.text);
            }
        }
    }
}
