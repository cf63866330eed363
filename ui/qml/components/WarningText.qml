import QtQuick
import QtQuick.Layouts

// A warning to the user. An empty one shows nothing.
RowLayout {
    id: row

    required property string text
    // A screen reader reads an alert out as it comes; a lasting condition is a static text.
    property int role: Accessible.AlertMessage

    visible: text.length > 0
    spacing: Theme.rowSpacing
    Layout.fillWidth: true

    Symbol {
        name: "exclamationmark.triangle.fill"
        color: Theme.orange
        size: 15
        Layout.alignment: Qt.AlignTop
    }
    AppText {
        text: row.text
        font.pixelSize: Theme.subheadlineSize
        Layout.fillWidth: true
        Accessible.role: row.role
    }
}
