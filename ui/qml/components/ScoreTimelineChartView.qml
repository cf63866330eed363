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

    // The layer smooths the edges; it is drawn anew only when the scores or the size change.
    Shape {
        anchors.fill: parent
        layer.enabled: true
        layer.samples: 4

        ShapePath {
            strokeColor: Qt.rgba(1, 1, 1, 0.10)
            strokeWidth: 1
            fillColor: "transparent"

            PathSvg {
                path: chart.gridPath
            }
        }
        ShapePath {
            strokeWidth: -1
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
            fillRule: ShapePath.WindingFill

            PathSvg {
                path: chart.pointsPath
            }
        }
    }

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
