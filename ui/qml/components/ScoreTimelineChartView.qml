import QtQuick
import Cirrovane

// The scores of the latest scans over time. The pointer and the arrow keys point one of them out.
ScoreTimeline {
    id: chart

    // What is told of the scan that is pointed out.
    property string told: ""

    implicitHeight: 140
    labelSize: Theme.captionSize
    pointDiameter: 5
    gridColor: Qt.rgba(1, 1, 1, 0.10)
    lineColor: Theme.teal
    pointColor: Theme.text

    Accessible.role: Accessible.Grouping
    Accessible.name: "Score timeline"
    Accessible.description: told.length > 0 ? told : description
    Accessible.focusable: true

    activeFocusOnTab: count > 0
    onActiveFocusChanged: marked = activeFocus ? count - 1 : -1
    Keys.onLeftPressed: marked = Math.max(0, marked - 1)
    Keys.onRightPressed: marked = Math.min(count - 1, marked + 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            marked = event.key === Qt.Key_Home ? 0 : count - 1;
            event.accepted = true;
        }
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        hoverEnabled: true
        onPositionChanged: event => chart.marked = chart.nearest(event.x)
        onExited: chart.marked = chart.activeFocus ? chart.count - 1 : -1
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -3
        radius: Theme.controlRadius
        color: "transparent"
        border.width: 2
        border.color: Theme.focusRing
        visible: chart.activeFocus
    }
    AppToolTip {
        text: chart.told
        visible: chart.marked >= 0 && text.length > 0
        delay: 0
        x: Math.min(Math.max(0, chart.markedPoint.x - width / 2), chart.width - width)
        y: chart.markedPoint.y > chart.height / 2 ? chart.markedPoint.y - height - 10 : chart.markedPoint.y + 12
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
