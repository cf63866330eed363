import QtQuick
import QtQuick.Layouts

// What came of something that the user did, and what can be done about it. An empty one shows nothing.
RowLayout {
    id: row

    required property string text
    property int textSize: Theme.subheadlineSize
    property color textColor: Theme.secondaryText
    property int textAlignment: TextEdit.AlignLeft
    // The button's text; none without one.
    property string action: ""

    signal acted

    visible: text.length > 0
    spacing: Theme.rowSpacing
    Layout.fillWidth: true

    AppText {
        text: row.text
        font.pixelSize: row.textSize
        color: row.textColor
        horizontalAlignment: row.textAlignment
        Layout.fillWidth: true
        // A screen reader reads it out as it comes.
        Accessible.role: Accessible.AlertMessage
    }
    ActionButton {
        text: row.action
        description: row.text
        visible: row.action.length > 0
        onClicked: row.acted()
    }
}
