import QtQuick
import Cirrovane

// A number under its name.
Rectangle {
    id: pill

    required property string title
    required property string value
    property int tone: Tone.Plain
    // Large enough for a sign's colour to be read.
    property int valueSize: Theme.numberSize

    implicitWidth: Math.max(58, column.implicitWidth + 24)
    implicitHeight: column.implicitHeight + 16
    radius: 10
    color: Theme.pillFill

    Accessible.role: Accessible.StaticText
    Accessible.name: title + " " + value

    Column {
        id: column
        anchors.centerIn: parent
        spacing: 2

        AppLabel {
            text: pill.title
            font.pixelSize: Theme.captionSize
            color: Theme.dimmedText
            anchors.horizontalCenter: parent.horizontalCenter
            Accessible.ignored: true
        }
        AppLabel {
            text: pill.value
            font.pixelSize: pill.valueSize
            font.weight: Font.Bold
            color: Tone.color(pill.tone)
            anchors.horizontalCenter: parent.horizontalCenter
            Accessible.ignored: true
        }
    }
}
