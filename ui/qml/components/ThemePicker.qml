import QtQuick
import Cirrovane

// The choice of the look, for all surfaces.
SegmentedControl {
    required property AppSettings settings

    label: "Theme"
    choices: settings.visualStyles
    value: settings.visualStyle
    onChosen: style => settings.visualStyle = style
}
