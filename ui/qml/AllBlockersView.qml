pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Cirrovane

// A sheet with every blocker, which can be searched, narrowed and sorted.
Sheet {
    id: sheet

    required property PageContext context
    // The watched folder whose blockers it shows first, by its identifier; all for none.
    property string folder: ""

    title: "All Blockers"
    width: Math.min(920, (parent ? parent.width : 920) - 48)
    height: Math.min(860, (parent ? parent.height : 860) - 48)

    AllBlockersViewModel {
        id: blockers
        folder: sheet.folder
        context: sheet.context
    }
    Connections {
        target: blockers
        function onAboutToStartOver() {
            list.rememberPlace();
        }
        function onStartedOver(keepsPlace) {
            list.findPlace(keepsPlace);
        }
    }
    Shortcut {
        // The linter of Qt 6.4 does not know StandardKey.
        sequences: [StandardKey.Find] // qmllint disable unqualified
        enabled: sheet.opened
        onActivated: {
            search.forceActiveFocus(Qt.ShortcutFocusReason);
            search.selectAll();
        }
    }
    // The time goes by without any other news.
    Timer {
        interval: 10000
        repeat: true
        running: sheet.opened
        onTriggered: blockers.tellWaits()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            AppText {
                text: sheet.title
                font.pixelSize: Theme.headingSize
                font.weight: Font.Bold
                Accessible.role: Accessible.Heading
            }
            AppText {
                text: blockers.countText
                font.pixelSize: Theme.subheadlineSize
                color: Theme.dimmedText
                wrapMode: TextEdit.NoWrap
                Layout.alignment: Qt.AlignBaseline
            }
            AppLabel {
                text: blockers.note
                elide: Text.ElideMiddle
                font.pixelSize: Theme.subheadlineSize
                color: Theme.secondaryText
                horizontalAlignment: Text.AlignRight
                Layout.fillWidth: true
                Layout.rightMargin: Theme.rowSpacing
                // A screen reader reads it out as it comes.
                Accessible.role: Accessible.AlertMessage
            }
            ActionButton {
                text: "Close"
                onClicked: sheet.close()
            }
        }
        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            SearchField {
                id: search
                label: "Search names and paths"
                focus: true
                onTextChanged: blockers.search = text
                Keys.onDownPressed: list.focusRow(Math.max(0, list.currentIndex), Qt.TabFocusReason)
                Layout.fillWidth: true
                Layout.minimumWidth: 160
            }
            Choice {
                label: "Reason"
                text: blockers.reasonTitle
                entries: blockers.reasons
                chosenIndex: blockers.reasonRow
                onPicked: name => blockers.reason = name
            }
            Choice {
                label: "Folder"
                text: blockers.folderTitle
                entries: blockers.folders
                chosenIndex: blockers.folderRow
                onPicked: name => blockers.folder = name
            }
            Choice {
                label: "Order"
                text: blockers.orderTitle
                entries: blockers.orders
                chosenIndex: blockers.orderRow
                onPicked: name => blockers.order = name
            }
        }
        ColumnLayout {
            visible: blockers.isEmpty
            spacing: Theme.cardSpacing
            Layout.fillWidth: true
            Layout.topMargin: Theme.pagePadding

            EmptyState {
                title: blockers.emptyTitle
                subtitle: blockers.emptySubtitle
                Layout.fillWidth: true
            }
            ActionButton {
                text: "Show All Blockers"
                description: "Clears the search and the filters"
                visible: blockers.isNarrowed
                onClicked: sheet.clear()
            }
        }
        Item {
            visible: blockers.isEmpty
            Layout.fillHeight: true
        }
        ListView {
            id: list
            visible: !blockers.isEmpty
            model: blockers.rows
            clip: true
            reuseItems: true
            cacheBuffer: 152
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: false
            highlightFollowsCurrentItem: false
            Layout.fillWidth: true
            Layout.fillHeight: true

            // The row whose texts are cut under the pointer.
            property BlockerListItem pointed: null
            property var place: null

            function focusRow(row, reason) {
                if (count > 0) {
                    currentIndex = Math.max(0, Math.min(count - 1, row));
                    positionViewAtIndex(currentIndex, ListView.Contain);
                    currentItem.forceActiveFocus(reason);
                }
            }

            // A list that starts over in another report is looked at from the same row.
            function rememberPlace() {
                const first = itemAt(1, contentY) as BlockerListItem;
                place = {
                    row: indexAt(1, contentY),
                    key: first?.key ?? "",
                    offset: first ? contentY - first.y : 0,
                    current: (currentItem as BlockerListItem)?.key ?? "",
                    currentRow: currentIndex
                };
            }
            function findPlace(keepsPlace) {
                const known = (key, row) => {
                    const found = blockers.rows.indexOf(key);
                    return Math.min(count - 1, found >= 0 ? found : row);
                };
                currentIndex = keepsPlace ? known(place.current, place.currentRow) : Math.min(0, count - 1);
                if (!keepsPlace || place.row < 0) {
                    positionViewAtBeginning();
                } else {
                    positionViewAtIndex(known(place.key, place.row), ListView.Beginning);
                    contentY = Math.min(contentY + place.offset, Math.max(originY, originY + contentHeight - height));
                }
            }

            Accessible.role: Accessible.List
            Accessible.name: sheet.title

            Keys.onShortcutOverride: event => event.accepted = event.matches(StandardKey.Copy) // qmllint disable unqualified
            Keys.onPressed: event => {
                const page = Math.max(1, Math.floor(height / (currentItem?.height ?? height)) - 1);
                const steps = {
                    [Qt.Key_Up]: -1,
                    [Qt.Key_Down]: 1,
                    [Qt.Key_PageUp]: -page,
                    [Qt.Key_PageDown]: page,
                    [Qt.Key_Home]: -count,
                    [Qt.Key_End]: count
                };
                event.accepted = true;
                if (event.matches(StandardKey.Copy)) { // qmllint disable unqualified
                    blockers.copyPath(currentIndex);
                } else if (event.key in steps) {
                    focusRow(currentIndex + steps[event.key], Qt.TabFocusReason);
                } else if ([Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space].includes(event.key)) {
                    blockers.reveal(currentIndex);
                } else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
                    openMenu(currentItem, 36, currentItem.height / 2);
                } else {
                    event.accepted = false;
                }
            }

            function openMenu(item, x, y) {
                menu.key = (item as BlockerListItem).key;
                const at = item.mapToItem(list, x, y);
                menu.openAt(at.x, at.y);
            }

            T.ScrollBar.vertical: ScrollIndicator {
            }

            delegate: BlockerListItem {
                id: row
                width: list.width - 14
                onCutChanged: list.pointed = cut.length > 0 ? row : list.pointed === row ? null : list.pointed
                onPicked: list.focusRow(row.index, Qt.MouseFocusReason)
                onRevealRequested: blockers.reveal(row.index)
                onCopyRequested: blockers.copyPath(row.index)
                onMenuRequested: (x, y) => list.openMenu(row, x, y)
            }

            CommandMenu {
                id: menu

                // Its row may have another number by the time it is picked.
                property string key: ""

                text: "Copy Path"
                onPicked: blockers.copyPath(blockers.rows.indexOf(key))
            }
            AppToolTip {
                parent: list.pointed ?? list
                text: list.pointed?.cut ?? ""
                visible: list.pointed !== null && !menu.opened
            }
        }
    }

    function clear() {
        search.clear();
        blockers.clear();
        search.forceActiveFocus(Qt.OtherFocusReason);
    }

    component Choice: DropDownMenu {
        Layout.maximumWidth: 210
    }
}
