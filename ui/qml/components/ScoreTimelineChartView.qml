import QtQuick
import Cirrovane

// The scores of the latest scans over time.
ScoreTimeline {
    id: chart

    implicitHeight: 140
    labelSize: Theme.captionSize
    pointDiameter: 5
    gridColor: Qt.rgba(1, 1, 1, 0.10)
    lineColor: Theme.teal
    pointColor: Theme.text

    Accessible.role: Accessible.Grouping
    Accessible.name: "Score timeline"
    Accessible.description: description

    Repeater {
        model: chart.labels

        AppLabel {
            required property timelineLabel modelData

            x: modelData.position.x
            y: modelData.position.y
            text: modelData.text
            color: Theme.dimmedText
            font.pixelSize: Theme.captionSize
            Accessible.ignored: true
        }
    }
}
