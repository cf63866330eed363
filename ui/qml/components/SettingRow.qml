import QtQuick
import QtQuick.Layouts

// One setting: what it is, its control at the end of the line, and what keeps it from being what it says.
ColumnLayout {
    id: row

    // The control has it as its own name.
    required property string title
    property string explanation: ""
    property string note: ""
    // The text of the button that does something about the note; none without one.
    property string action: ""
    default property alias control: place.data

    signal acted

    spacing: Theme.rowSpacing
    Layout.fillWidth: true

    // Anchors, since a layout of Qt 6.4 leaves the control where it was when the text beside it needs fewer lines.
    Item {
        implicitHeight: Math.max(texts.implicitHeight, place.implicitHeight)
        Layout.fillWidth: true

        ColumnLayout {
            id: texts
            spacing: 2
            anchors {
                left: parent.left
                right: place.left
                rightMargin: Theme.cardSpacing
                verticalCenter: parent.verticalCenter
            }

            AppLabel {
                text: row.title
                font.pixelSize: Theme.bodySize
                Layout.fillWidth: true
                Accessible.ignored: true
            }
            AppText {
                text: row.explanation
                visible: text.length > 0
                font.pixelSize: Theme.captionSize
                color: Theme.dimmedText
                Layout.fillWidth: true
            }
        }
        RowLayout {
            id: place
            anchors {
                right: parent.right
                verticalCenter: parent.verticalCenter
            }
        }
    }
    NoteRow {
        text: row.note
        textSize: Theme.captionSize
        textColor: Theme.yellow
        action: row.action
        onActed: row.acted()
    }
}
