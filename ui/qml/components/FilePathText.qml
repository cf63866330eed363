import QtQuick

// A path on one line. A long one loses its middle, since its ends tell the most.
ElidedText {
    // Made harmless for the screen.
    required property string path

    whole: path
    elide: Text.ElideMiddle
    copyLabel: "Copy Path"
    font.pixelSize: Theme.smallSize
    color: Theme.dimmedText
    activeFocusOnTab: true
}
