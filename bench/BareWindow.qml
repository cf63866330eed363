import QtQuick
import QtQuick.Controls.Basic

// As large as the main window is at first, and of the same style of controls.
ApplicationWindow {
    width: 1120
    height: 800
    visible: true
    title: "Bare window"

    Column {
        anchors.centerIn: parent

        Label {
            text: "Nothing to see"
        }
        Button {
            text: "Nothing to do"
        }
    }
}
