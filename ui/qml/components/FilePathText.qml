import QtQuick

// A path on one line. Where it does not fit its middle is left out, since its ends tell the most; the whole of it is in
// the tooltip and in what a screen reader says.
AppLabel {
    id: label

    // Made harmless for the screen.
    required property string path

    text: path
    elide: Text.ElideMiddle
    font.pixelSize: Theme.smallSize
    color: Theme.dimmedText
    Accessible.description: truncated ? path : ""

    HoverHandler {
        id: pointer
    }
    AppToolTip {
        text: label.path
        visible: pointer.hovered && label.truncated
    }
}
