import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Cirrovane

// A sheet that asks once what is handed over of all that is known, and shows how it will begin.
Sheet {
    id: sheet

    required property PageContext context

    // The panel in which the user named a file is gone.
    signal ended

    title: "Export Proof"
    onAboutToShow: proof.look()

    ExportViewModel {
        id: proof
        context: sheet.context
        onEnded: sheet.ended()
    }

    // A choice below its name, with a word on what is chosen.
    component Choice: ColumnLayout {
        id: choice

        property alias heading: control.label
        property alias choices: control.choices
        property alias value: control.value
        property string note: ""

        signal chosen(value: string)

        spacing: Theme.tightSpacing
        Layout.fillWidth: true

        AppLabel {
            text: choice.heading
            font.pixelSize: Theme.bodySize
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        SegmentedControl {
            id: control
            label: ""
            choices: null
            value: ""
            onChosen: value => choice.chosen(value)
        }
        AppText {
            text: choice.note
            font.pixelSize: Theme.captionSize
            color: Theme.dimmedText
            Layout.fillWidth: true
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        AppText {
            text: sheet.title
            font.pixelSize: Theme.headingSize
            font.weight: Font.Bold
            Layout.fillWidth: true
            Accessible.role: Accessible.Heading
        }
        Choice {
            heading: "What"
            choices: proof.forms
            value: proof.form
            note: proof.formNote
            onChosen: value => proof.form = value
        }
        Choice {
            heading: "Names of files and folders"
            choices: proof.namings
            value: proof.naming
            note: proof.namingNote
            onChosen: value => proof.naming = value
        }
        AppLabel {
            text: "It will begin like this:"
            font.pixelSize: Theme.subheadlineSize
            color: Theme.dimmedText
            Layout.fillWidth: true
        }
        Rectangle {
            radius: Theme.controlRadius
            color: Theme.controlFill
            border.width: flickable.activeFocus ? 2 : 1
            border.color: flickable.activeFocus ? Theme.focusRing : Theme.controlOutline
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.minimumHeight: 80

            Flickable {
                id: flickable
                anchors.fill: parent
                anchors.margins: Theme.rowSpacing
                clip: true
                contentWidth: width
                contentHeight: preview.implicitHeight
                boundsBehavior: Flickable.StopAtBounds
                activeFocusOnTab: true

                Accessible.role: Accessible.Grouping
                Accessible.name: "Preview"

                Keys.onUpPressed: contentY = Math.max(0, contentY - 48)
                Keys.onDownPressed: contentY = Math.min(Math.max(0, contentHeight - height), contentY + 48)

                T.ScrollBar.vertical: ScrollIndicator {
                }

                AppText {
                    id: preview
                    width: flickable.width - 14
                    text: proof.preview
                    isMonospaced: true
                    font.pixelSize: Theme.captionSize
                    wrapMode: TextEdit.WrapAnywhere
                    onTextChanged: flickable.contentY = 0
                }
            }
        }
        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            Item {
                Layout.fillWidth: true
            }
            ActionButton {
                text: "Cancel"
                onClicked: sheet.close()
            }
            ActionButton {
                text: "Export..."
                symbolName: "square.and.arrow.up"
                focus: true
                onClicked: {
                    sheet.close();
                    proof.save();
                }
            }
        }
    }
}
