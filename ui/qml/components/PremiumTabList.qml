import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A page that ends in a list of any length. Only rows in sight are made. Each row has one control.
ScrollingPage {
    id: page

    required property var model
    // Makes a ListRow.
    required property Component delegate
    // The content above the rows.
    default property alias content: column.data
    // The last control above the rows. The Tab key leads from it to the first row.
    required property Item lastControl

    // The keyboard goes from row to row by their numbers, since scrolling makes rows in any order.
    function focusRow(row, reason) {
        if (row < 0 || row >= list.count) {
            return false;
        }
        list.positionViewAtIndex(row, ListView.Contain);
        list.currentIndex = row;
        (list.currentItem as ListRow).control.forceActiveFocus(reason);
        return true;
    }

    function focusNext(row, event) {
        event.accepted = focusRow(row + 1, Qt.TabFocusReason) || leave();
    }

    function focusPrevious(row, event) {
        if (!focusRow(row - 1, Qt.BacktabFocusReason)) {
            lastControl.forceActiveFocus(Qt.BacktabFocusReason);
        }
        event.accepted = true;
    }

    // Moves the focus to the row that came in the place of another.
    function focusInPlaceOf(row, reason) {
        if (!focusRow(Math.min(row, list.count - 1), reason)) {
            lastControl.forceActiveFocus(reason);
        }
    }

    // Moves the focus past the rows that are made.
    function leave() {
        let item = list.currentItem;
        do {
            item = item.nextItemInFocusChain(true);
        } while (item && isInside(item));
        if (item) {
            item.forceActiveFocus(Qt.TabFocusReason);
        }
        return item !== null;
    }

    function isInside(item) {
        for (let parent = item; parent; parent = parent.parent) {
            if (parent === list) {
                return true;
            }
        }
        return false;
    }

    area: list

    Connections {
        target: page.lastControl.Keys
        function onTabPressed(event) {
            event.accepted = page.focusRow(0, Qt.TabFocusReason);
        }
    }
    ListView {
        id: list
        anchors.fill: parent
        model: page.model
        delegate: page.delegate
        spacing: Theme.pageSpacing
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        // Makes rows ahead, a few at a time: a screen reader hears of no others.
        cacheBuffer: 6000
        activeFocusOnTab: false
        keyNavigationEnabled: false
        currentIndex: -1
        highlightFollowsCurrentItem: false

        T.ScrollBar.vertical: ScrollIndicator {
        }

        // Uses no ids of this file: a ListView of Qt 6.4 cannot make a header that is bound to its file.
        header: Item {
            height: childrenRect.y + childrenRect.height + Theme.pageSpacing
        }
        footer: Item {
            height: Theme.pagePadding
        }
    }

    ColumnLayout {
        id: column
        parent: list.headerItem
        x: page.columnX
        y: Theme.pagePadding
        width: page.columnWidth
        spacing: Theme.pageSpacing

        PageHeading {
            title: page.title
            subtitle: page.subtitle
        }
    }
}
