import QtQuick
import Cirrovane

// A score in its circle. A screen reader hears a new score at once; the picture moves there as on a spring.
Item {
    id: dial

    required property int score
    required property int tone
    property bool motionEnabled: Theme.motionEnabled
    property real dialSize: 160
    property real strokeWidth: 14
    property real shadowRadius: 12
    property string caption: "Upload Trust"

    implicitWidth: dialSize
    implicitHeight: dialSize

    Accessible.role: Accessible.StaticText
    Accessible.name: ring.spoken(caption, score)

    Spring {
        id: spring
        target: dial.score
        enabled: dial.motionEnabled && dial.visible
    }

    // The glow reaches beyond the dial.
    ScoreRing {
        id: ring
        anchors.centerIn: parent
        width: dial.dialSize + 2 * glowMargin
        height: width
        progress: spring.value
        tone: dial.tone
        strokeWidth: dial.strokeWidth
        shadowRadius: dial.shadowRadius
        track: Qt.rgba(1, 1, 1, 0.12)
        green: Theme.green
        yellow: Theme.yellow
        orange: Theme.orange
        red: Theme.red
    }

    Column {
        id: texts
        anchors.centerIn: parent
        width: (dial.dialSize - 2 * dial.strokeWidth) * 0.84

        AppLabel {
            width: parent.width
            text: ring.number
            font.pixelSize: Math.min(Theme.dialSize, Math.round(dial.dialSize * 0.3))
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
        AppLabel {
            width: parent.width
            text: dial.caption
            color: Theme.dimmedText
            font.pixelSize: Math.min(Theme.captionSize, Math.round(dial.dialSize * 0.1))
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            maximumLineCount: 2
            Accessible.ignored: true
        }
    }
}
