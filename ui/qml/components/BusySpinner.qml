import QtQuick

// Turns while something is under way, and is out of sight otherwise. Without motion it stands still.
Item {
    id: spinner

    property bool isBusy: true
    property int size: 14

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Symbol {
        name: "arrow.clockwise"
        size: spinner.size
        visible: spinner.isBusy
        anchors.centerIn: parent

        // A few steps a second are enough to show that something goes on.
        Timer {
            interval: 100
            repeat: true
            running: spinner.visible && spinner.isBusy && Theme.motionEnabled
            onTriggered: parent.rotation = (parent.rotation + 36) % 360
        }
    }
}
