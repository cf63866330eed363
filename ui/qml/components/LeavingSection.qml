import QtQuick
import QtQuick.Layouts
import Cirrovane

// Sleep as soon as that is safe: the button, or what is waited for and a way out.
ColumnLayout {
    id: section

    required property LeaveViewModel leaving
    property int textSize: Theme.subheadlineSize

    spacing: Theme.tightSpacing
    Layout.fillWidth: true

    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        BusySpinner {
            visible: section.leaving.isWaiting
        }
        AppText {
            text: section.leaving.waitText || section.leaving.awakeText || "Leaving soon?"
            font.pixelSize: section.textSize
            color: section.leaving.isWaiting ? Theme.text : Theme.dimmedText
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter
        }
        ActionButton {
            text: section.leaving.isWaiting ? "Cancel" : "Sleep When Safe"
            symbolName: section.leaving.isWaiting ? "" : "moon"
            description: section.leaving.waitText
            onClicked: section.leaving.isWaiting ? section.leaving.cancel() : section.leaving.sleepWhenSafe()
        }
    }
    AppText {
        text: section.leaving.awakeText
        visible: section.leaving.isWaiting && text.length > 0
        font.pixelSize: Theme.captionSize
        color: Theme.dimmedText
        Layout.fillWidth: true
    }
    NoteRow {
        text: section.leaving.outcome
        textSize: section.textSize
        textColor: Theme.yellow
    }
}
