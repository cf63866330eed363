import QtQuick
import QtQuick.Layouts
import Cirrovane

// What is left to upload and how it goes. Shows nothing while nothing is left.
ColumnLayout {
    id: section

    required property PageContext context

    visible: uploading.amount.length > 0
    spacing: Theme.tightSpacing
    Layout.fillWidth: true

    UploadsViewModel {
        id: uploading
        context: section.context
    }

    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        AppText {
            text: uploading.amount
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
        AppText {
            text: uploading.timeLeft
            color: Theme.secondaryText
            horizontalAlignment: TextEdit.AlignRight
            Layout.fillWidth: true
        }
    }
    CapacityGauge {
        visible: uploading.isMoving
        ratio: uploading.share
        valueText: uploading.shareText
        label: "Uploaded"
        tone: Tone.Info
        thickness: 4
    }
    RowLayout {
        visible: uploading.stuckText.length > 0
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        Symbol {
            name: "exclamationmark.triangle.fill"
            color: Theme.yellow
            size: 18
        }
        AppText {
            text: uploading.stuckText
            Layout.fillWidth: true
        }
        ActionButton {
            text: "Why and What to Do"
            description: uploading.stuckText
            onClicked: sheet.open()
        }
    }
    StuckUploadsSheet {
        id: sheet
        uploads: uploading
    }
}
