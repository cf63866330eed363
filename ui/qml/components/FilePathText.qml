import QtQuick

// A path on one line. A long one loses its middle, since its ends tell the most. The tooltip and a screen reader have
// the whole path.
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
