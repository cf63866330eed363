pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Cirrovane

// The watched folders.
PremiumCard {
    id: card

    required property PageContext context

    // The blockers of the folder with this identifier.
    signal blockersRequested(folder: string)

    heading: "Critical Folder Watchlist"

    // Moves the focus to the next folder, or to the button that adds one.
    function removeRow(row) {
        watchlist.remove(row);
        const next = folders.itemAt(Math.min(row, folders.count - 1)) as FolderRow;
        (next ? next.removeButton : addButton).forceActiveFocus(Qt.OtherFocusReason);
    }

    WatchlistViewModel {
        id: watchlist
        context: card.context
    }

    // All of the card takes folders.
    DropArea {
        id: drops
        parent: card
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: drop => {
            if (watchlist.addDropped(drop.urls)) {
                drop.accept(Qt.CopyAction);
            }
        }

        Rectangle {
            anchors.fill: parent
            visible: drops.containsDrag
            radius: Theme.cardRadius
            color: Theme.controlFill
            border.width: 2
            border.color: Theme.focusRing
        }
    }
    RowLayout {
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        ColumnLayout {
            spacing: 2
            Layout.fillWidth: true

            AppText {
                text: card.heading
                font.pixelSize: Theme.headingSize
                font.weight: Font.DemiBold
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
            AppText {
                text: "Mark the folders you cannot afford to lose."
                font.pixelSize: Theme.subheadlineSize
                color: Theme.secondaryText
                Layout.fillWidth: true
            }
        }
        ActionButton {
            id: addButton
            text: "Add Folder"
            symbolName: "plus"
            onClicked: watchlist.addFolder()
            Layout.alignment: Qt.AlignTop
        }
    }
    EmptyState {
        visible: watchlist.isEmpty
        title: "No folders tracked"
        subtitle: "Add at least one critical folder to activate trust scoring."
    }
    Repeater {
        id: folders
        model: watchlist.rows

        FolderRow {
        }
    }
    NoteRow {
        text: watchlist.removalNote
        action: "Undo"
        onActed: {
            watchlist.undoRemoval();
            addButton.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
    WarningText {
        text: watchlist.saveFailure
    }

    component FolderRow: RowLayout {
        id: row

        required property int index
        required property string name
        required property string path
        required property string symbol
        required property int tone
        required property string health
        required property string folderId
        property alias removeButton: button

        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        Symbol {
            id: mark
            name: row.symbol
            color: Tone.color(row.tone)
            size: 18
        }
        Item {
            implicitWidth: words.implicitWidth
            implicitHeight: words.implicitHeight
            Layout.fillWidth: true

            ColumnLayout {
                id: words
                spacing: 2
                anchors {
                    left: parent.left
                    right: parent.right
                }

                // A screen reader hears them as one thing beside the button behind them.
                Accessible.role: Accessible.Grouping
                Accessible.name: row.name

                ElidedText {
                    whole: row.name
                    font.weight: Font.DemiBold
                    Layout.fillWidth: true

                    TapHandler {
                        onTapped: opening.clicked()
                    }
                }
                FilePathText {
                    path: row.path
                    Layout.fillWidth: true
                }
                AppText {
                    text: row.health
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondaryText
                    Layout.fillWidth: true

                    TapHandler {
                        onTapped: opening.clicked()
                    }
                }
            }
            // Lies behind the texts, which can be selected, and reaches below the symbols on both sides.
            T.AbstractButton {
                id: opening
                z: -1
                anchors {
                    fill: parent
                    leftMargin: -(mark.width + row.spacing)
                    rightMargin: -(arrow.width + row.spacing)
                }
                focusPolicy: Qt.StrongFocus
                hoverEnabled: true
                onClicked: card.blockersRequested(row.folderId)

                background: Rectangle {
                    radius: Theme.controlRadius
                    color: opening.down ? Theme.controlPressed : opening.hovered ? Theme.controlFill : "transparent"

                    FocusRing {
                        target: opening
                    }
                }

                Keys.onReturnPressed: opening.clicked()
                Keys.onEnterPressed: opening.clicked()

                Accessible.role: Accessible.Button
                Accessible.name: "Show Blockers"
                Accessible.description: row.name + ", " + row.path
                Accessible.onPressAction: opening.clicked()
            }
        }
        Symbol {
            id: arrow
            name: "chevron.right"
            size: 12
        }
        ActionButton {
            id: button
            symbolName: "trash"
            description: row.name + ", " + row.path
            onClicked: card.removeRow(row.index)
            Accessible.name: "Remove"
        }
    }
}
