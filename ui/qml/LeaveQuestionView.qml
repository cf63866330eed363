import QtQuick
import QtQuick.Layouts
import Cirrovane

// The question before a shutdown that comes before all work is in the cloud.
Sheet {
    id: sheet

    required property LeaveViewModel leaving

    title: leaving.canWait ? "It Is Not Safe to Leave Yet" : "Waiting Until It Is Safe"
    height: Math.min(implicitContentHeight + topPadding + bottomPadding, (parent ? parent.height : 700) - 48)
    width: Math.min(480, (parent ? parent.width : 640) - 48)
    // Whoever closes it has not said that the work may be lost.
    onClosed: {
        if (leaving.canWait) {
            leaving.answerWait();
        }
    }

    contentItem: ColumnLayout {
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title
        Accessible.description: sheet.leaving.question

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            Symbol {
                name: "exclamationmark.triangle.fill"
                color: Theme.yellow
                size: 24
            }
            AppText {
                text: sheet.title
                font.pixelSize: Theme.headingSize
                font.weight: Font.Bold
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
        }
        AppText {
            text: sheet.leaving.left
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
        AppText {
            text: sheet.leaving.question
            color: Theme.secondaryText
            Layout.fillWidth: true
            Accessible.role: Accessible.AlertMessage
        }
        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            Item {
                Layout.fillWidth: true
            }
            ActionButton {
                text: "Leave Anyway"
                onClicked: sheet.leaving.answerLeave()
            }
            ActionButton {
                text: "Wait"
                visible: sheet.leaving.canWait
                focus: true
                onClicked: sheet.leaving.answerWait()
            }
        }
    }
}
