import QtQuick

// A symbol by its name, in one colour. It says nothing to a screen reader, since words beside it say the same.
Image {
    id: symbol

    required property string name
    property color color: Theme.text
    property int size: 16

    function hex(part: real): string {
        return Math.round(part * 255).toString(16).padStart(2, "0");
    }

    source: "image://symbols/" + name + "/" + hex(color.r) + hex(color.g) + hex(color.b) + hex(color.a)
    sourceSize.width: size
    sourceSize.height: size
    width: size
    height: size
    fillMode: Image.PreserveAspectFit

    Accessible.ignored: true
}
