import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A page that ends in a list of any length, of which only what is in sight is made. Each row has one control.
ScrollingPage {
    id: page

    required property var model
    // Of a ListRow.
    required property Component delegate
    // What stands above the rows.
    default property alias content: column.data
    // The last control above the rows, from which the Tab key leads on to them.
    required property Item lastControl

    // Rows come and go with the scrolling, in any order: the keyboard goes from row to row by their numbers.
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

    // A row's control is gone or no longer the same: the focus goes to whatever came in its place.
    function focusInPlaceOf(row, reason) {
        if (!focusRow(Math.min(row, list.count - 1), reason)) {
            lastControl.forceActiveFocus(reason);
        }
    }

    // Past the rows that happen to be there.
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
        // Rows that are made ahead, a few at a time: a screen reader hears of no others.
        cacheBuffer: 6000
        activeFocusOnTab: false
        keyNavigationEnabled: false
        currentIndex: -1
        highlightFollowsCurrentItem: false

        T.ScrollBar.vertical: ScrollIndicator {
        }

        // Without ids of this file: a list view of Qt 6.4 cannot make a header that is bound to where it stands.
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
