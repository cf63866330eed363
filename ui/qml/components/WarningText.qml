import QtQuick
import QtQuick.Layouts

// What went wrong, where it concerns the user; nothing while it is empty.
RowLayout {
    id: row

    required property string text
    // An alert is read out as it comes; what was there before is a static text.
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
