import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 500
    height: 300

    Component {
        id: component

        ScoreTimelineChartView {
            width: 400
        }
    }

    ComponentCase {
        name: "ScoreTimelineChartView"

        function make() {
            return createTemporaryObject(component, root);
        }

        function texts(chart) {
            return findItems(chart, item => item instanceof AppLabel).map(label => label.text);
        }

        function test_chart_withoutScores_showsTheAxisAlone() {
            const chart = make();
            compare(texts(chart), ["0", "25", "50", "75", "100"]);
        }

        function test_chart_withoutScores_saysSo() {
            const chart = make();
            compare(ScreenReader.heard(chart), ["Grouping Score timeline"]);
            compare(ScreenReader.description(chart), "No scans yet");
        }

        function test_chart_axis_standsBesideThePlot() {
            const chart = make();
            for (const label of findItems(chart, item => item instanceof AppLabel)) {
                verify(label.x >= 0 && label.x + label.width <= chart.plot.left + 1, label.text);
            }
        }

        function test_chart_anotherWidth_isDrawnForIt() {
            const chart = make();
            chart.width = 300;
            compare(chart.plot.right, 300);
        }
    }
}
