pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Cirrovane

// A sheet over the window: which uploads are stuck, since when, why, and what to do next.
Sheet {
    id: sheet

    required property UploadsViewModel uploads

    title: "Stuck Uploads"
    // In the middle of the window, wherever on the page it is asked for.
    parent: T.Overlay.overlay

    component Detail: AppText {
        visible: text.length > 0
        font.pixelSize: Theme.subheadlineSize
        color: Theme.secondaryText
        Layout.fillWidth: true
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            ColumnLayout {
                spacing: 2
                Layout.fillWidth: true

                AppText {
                    text: sheet.title
                    font.pixelSize: Theme.headingSize
                    font.weight: Font.Bold
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                AppText {
                    text: "They wait longer than what waits beside them explains. Cirrovane changes no file."
                    font.pixelSize: Theme.captionSize
                    color: Theme.dimmedText
                    Layout.fillWidth: true
                }
            }
            ActionButton {
                text: "Close"
                focus: true
                onClicked: sheet.close()
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
            Accessible.name: sheet.title

            Keys.onUpPressed: contentY = Math.max(0, contentY - 48)
            Keys.onDownPressed: contentY = Math.min(Math.max(0, contentHeight - height), contentY + 48)

            T.ScrollBar.vertical: ScrollIndicator {
            }

            ColumnLayout {
                id: column
                width: flickable.width - 14
                spacing: Theme.cardSpacing

                Repeater {
                    model: sheet.uploads.hindrances

                    ColumnLayout {
                        id: hindrance

                        required property string title
                        required property string detail

                        spacing: 2
                        Layout.fillWidth: true

                        AppText {
                            text: hindrance.title
                            color: Theme.yellow
                            font.weight: Font.DemiBold
                            Layout.fillWidth: true
                        }
                        Detail {
                            text: hindrance.detail
                        }
                    }
                }
                Repeater {
                    model: sheet.uploads.stuck

                    ColumnLayout {
                        id: row

                        required property int index
                        required property string path
                        required property string size
                        required property string waiting
                        required property string since
                        required property string error
                        required property string nextStep

                        spacing: 2
                        Layout.fillWidth: true

                        Divider {
                            Layout.bottomMargin: Theme.tightSpacing
                        }
                        FilePathText {
                            path: row.path
                            color: Theme.text
                            Layout.fillWidth: true
                        }
                        DatedText {
                            text: row.waiting + ", " + row.size
                            date: row.since
                            font.pixelSize: Theme.subheadlineSize
                            color: Theme.secondaryText
                            Layout.fillWidth: true
                        }
                        Detail {
                            text: row.error
                        }
                        AppText {
                            text: row.nextStep
                            font.pixelSize: Theme.subheadlineSize
                            Layout.fillWidth: true
                        }
                        ActionButton {
                            text: "Reveal in Finder"
                            description: row.path
                            onClicked: sheet.uploads.reveal(row.index)
                            Layout.topMargin: Theme.tightSpacing
                        }
                    }
                }
                Detail {
                    text: sheet.uploads.stuckText.length > 0 ? sheet.uploads.unlistedText : "No file is stuck any more."
                }
            }
        }
    }
}
