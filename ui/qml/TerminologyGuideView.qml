import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Cirrovane

// A sheet over the window that explains every term.
Sheet {
    id: guide

    title: "Terminology Guide"

    TerminologyModel {
        id: terminology
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: guide.title

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            ColumnLayout {
                spacing: 2
                Layout.fillWidth: true

                AppText {
                    text: guide.title
                    font.pixelSize: Theme.headingSize
                    font.weight: Font.Bold
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                AppText {
                    text: "What each trust signal and blocker reason means."
                    font.pixelSize: Theme.captionSize
                    color: Theme.dimmedText
                    Layout.fillWidth: true
                }
            }
            ActionButton {
                text: "Close"
                focus: true
                onClicked: guide.close()
                Layout.alignment: Qt.AlignTop
            }
        }

        Flickable {
            id: flickable
            clip: true
            contentWidth: width
            contentHeight: column.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            Layout.fillWidth: true
            Layout.fillHeight: true

            Accessible.role: Accessible.List
            Accessible.name: guide.title

            Keys.onUpPressed: contentY = Math.max(0, contentY - 48)
            Keys.onDownPressed: contentY = Math.min(Math.max(0, contentHeight - height), contentY + 48)

            T.ScrollBar.vertical: ScrollIndicator {
            }

            ColumnLayout {
                id: column
                width: flickable.width - 14
                spacing: Theme.cardSpacing

                Repeater {
                    model: terminology.sections

                    ColumnLayout {
                        id: section

                        required property int index
                        required property string title
                        required property ListModelBase terms

                        spacing: Theme.cardSpacing
                        Layout.fillWidth: true

                        Divider {
                            visible: section.index > 0
                        }
                        AppText {
                            text: section.title
                            font.pixelSize: Theme.bodySize + 1
                            font.weight: Font.Bold
                            Layout.fillWidth: true
                            Accessible.role: Accessible.Heading
                        }
                        Repeater {
                            model: section.terms

                            ColumnLayout {
                                id: row

                                required property string term
                                required property string explanation

                                spacing: 2
                                Layout.fillWidth: true

                                AppText {
                                    text: row.term
                                    font.weight: Font.DemiBold
                                    Layout.fillWidth: true
                                }
                                AppText {
                                    text: row.explanation
                                    font.pixelSize: Theme.smallSize
                                    Layout.fillWidth: true
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}
