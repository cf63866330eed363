import QtQuick
import QtQuick.Layouts
import Cirrovane

// How full something is, from 0 to 1, with the share in words.
RowLayout {
    id: gauge

    required property real ratio
    required property string valueText
    required property string label
    required property int tone
    property int thickness: 8

    spacing: Theme.rowSpacing
    Layout.fillWidth: true

    Accessible.role: Accessible.ProgressBar
    Accessible.name: label
    Accessible.description: valueText

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: gauge.thickness
        radius: height / 2
        color: Theme.controlHover

        Rectangle {
            width: Math.max(parent.height, parent.width * Math.max(0, Math.min(1, gauge.ratio)))
            height: parent.height
            radius: height / 2
            color: Tone.color(gauge.tone)
        }
    }
    AppLabel {
        text: gauge.valueText
        font.pixelSize: Theme.subheadlineSize
    }
}
