import QtQuick
import QtQuick.Shapes
import Cirrovane

// The scores of the latest scans over time.
ScoreTimeline {
    id: chart

    implicitHeight: 140
    labelSize: Theme.captionSize
    pointDiameter: 5

    Accessible.role: Accessible.Grouping
    Accessible.name: "Score timeline"
    Accessible.description: description

    Repeater {
        model: chart.scoreMarks

        Item {
            id: scoreMark

            required property timelineMark modelData

            Rectangle {
                x: chart.plot.x
                y: Math.round(scoreMark.modelData.place)
                width: chart.plot.width
                height: 1
                color: Qt.rgba(1, 1, 1, 0.10)
            }
            AppLabel {
                y: scoreMark.modelData.labelStart
                width: chart.plot.x - 6
                text: scoreMark.modelData.text
                color: Theme.dimmedText
                font.pixelSize: chart.labelSize
                horizontalAlignment: Text.AlignRight
                Accessible.ignored: true
            }
        }
    }
    Repeater {
        model: chart.timeMarks

        Item {
            id: timeMark

            required property timelineMark modelData

            Rectangle {
                x: Math.round(timeMark.modelData.place)
                y: chart.plot.y
                width: 1
                height: chart.plot.height
                color: Qt.rgba(1, 1, 1, 0.06)
            }
            AppLabel {
                x: timeMark.modelData.labelStart
                y: chart.height - height
                text: timeMark.modelData.text
                color: Theme.dimmedText
                font.pixelSize: chart.labelSize
                Accessible.ignored: true
            }
        }
    }

    // Drawn anew only when the scores or the size change.
    Shape {
        anchors.fill: parent
        layer.enabled: true
        layer.samples: 4

        ShapePath {
            strokeColor: "transparent"
            fillGradient: LinearGradient {
                y1: chart.plot.top
                y2: chart.plot.bottom
                GradientStop {
                    position: 0
                    color: Qt.alpha(Theme.teal, 0.5)
                }
                GradientStop {
                    position: 1
                    color: Qt.alpha(Theme.teal, 0.05)
                }
            }
            PathSvg {
                path: chart.areaPath
            }
        }
        ShapePath {
            strokeColor: Theme.teal
            strokeWidth: 2.5
            joinStyle: ShapePath.RoundJoin
            capStyle: ShapePath.RoundCap
            fillColor: "transparent"
            PathSvg {
                path: chart.linePath
            }
        }
        ShapePath {
            strokeWidth: -1
            fillColor: Theme.text
            PathSvg {
                path: chart.pointsPath
            }
        }
    }
}
