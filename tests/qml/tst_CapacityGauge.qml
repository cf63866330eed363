import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 400
    height: 100

    Component {
        id: component

        CapacityGauge {
            width: 300
            ratio: 0.5
            valueText: "50%"
            label: "Disk"
            tone: Tone.Warning
        }
    }

    ComponentCase {
        name: "CapacityGauge"

        function make(ratio) {
            const gauge = createTemporaryObject(component, root, {ratio: ratio});
            // The layout gives the track its width.
            tryVerify(() => track(gauge).width > 100);
            return gauge;
        }

        function track(gauge) {
            return bar(gauge).parent;
        }

        function bar(gauge) {
            return findItem(gauge, item => item instanceof Rectangle && item.parent instanceof Rectangle);
        }

        function test_gauge_ratio_isTheBarsShare_data() {
            return [
                {tag: "a quarter", ratio: 0.25, share: 0.25},
                {tag: "half", ratio: 0.5, share: 0.5},
                {tag: "full", ratio: 1, share: 1},
                {tag: "beyond full", ratio: 1.7, share: 1}
            ];
        }

        function test_gauge_ratio_isTheBarsShare(data) {
            const gauge = make(data.ratio);
            fuzzyCompare(bar(gauge).width, track(gauge).width * data.share, 0.01);
        }

        function test_gauge_nothing_isAPoint_data() {
            return [{tag: "empty", ratio: 0}, {tag: "below empty", ratio: -3}];
        }

        function test_gauge_nothing_isAPoint(data) {
            const gauge = make(data.ratio);
            compare(bar(gauge).width, bar(gauge).height);
        }

        function test_gauge_newRatio_moves() {
            const gauge = make(0.25);
            gauge.ratio = 0.75;
            fuzzyCompare(bar(gauge).width, track(gauge).width * 0.75, 0.01);
        }

        function test_gauge_tone_isTheBars() {
            compare(bar(make(0.5)).color, Theme.orange);
        }

        function test_gauge_thickness_isTheBarsHeight() {
            const gauge = make(0.5);
            compare(bar(gauge).height, 8);
            gauge.thickness = 4;
            tryCompare(bar(gauge), "height", 4);
        }

        function test_gauge_isHeardByNameAndShare() {
            const gauge = make(0.5);
            compare(ScreenReader.heard(gauge)[0], "ProgressBar Disk");
            compare(ScreenReader.description(gauge), "50%");
        }
    }
}
