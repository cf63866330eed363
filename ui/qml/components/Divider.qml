import QtQuick
import QtQuick.Layouts

Rectangle {
    implicitHeight: 1
    color: Theme.divider
    Layout.fillWidth: true
    Accessible.ignored: true
}
