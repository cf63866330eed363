import QtQuick
import Cirrovane

// A word on the colour of its tone.
Rectangle {
    id: badge

    required property string text
    required property int tone
    readonly property color tint: Tone.color(tone)

    implicitWidth: label.implicitWidth + 18
    implicitHeight: label.implicitHeight + 8
    radius: height / 2
    color: Qt.rgba(tint.r, tint.g, tint.b, 0.22)

    AppLabel {
        id: label
        anchors.centerIn: parent
        text: badge.text
        color: Theme.text
        font.pixelSize: Theme.captionSize
        font.weight: Font.DemiBold
    }
}
