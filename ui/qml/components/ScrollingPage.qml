import QtQuick

// A page that scrolls as a whole, by keys too. It keeps the control with the focus in sight.
FocusScope {
    id: page

    required property string title
    required property string subtitle
    // What scrolls.
    required property Flickable area
    // Whether two cards fit beside each other.
    readonly property bool isWide: width >= Theme.wideWidth
    // The place of the page's one column.
    readonly property real columnWidth: Math.min(width, Theme.pageWidth) - 2 * Theme.pagePadding
    readonly property real columnX: Math.max(Theme.pagePadding, (width - columnWidth) / 2)

    function scrollTo(y) {
        const last = Math.max(area.originY, area.originY + area.contentHeight - area.height);
        area.contentY = Math.max(area.originY, Math.min(last, y));
    }

    function reveal(item) {
        const top = item.mapToItem(area.contentItem, 0, 0).y;
        if (top < area.contentY + Theme.pagePadding) {
            scrollTo(top - Theme.pagePadding);
        } else if (top + item.height > area.contentY + area.height - Theme.pagePadding) {
            scrollTo(top + item.height + Theme.pagePadding - area.height);
        }
    }

    Accessible.role: Accessible.Pane
    Accessible.name: title

    Connections {
        target: page.Window.window
        function onActiveFocusItemChanged() {
            const item = page.Window.window.activeFocusItem;
            for (let parent = item; parent; parent = parent.parent) {
                if (parent === page.area.contentItem) {
                    page.reveal(item);
                    return;
                }
            }
        }
    }

    Keys.onPressed: event => {
        const step = event.key === Qt.Key_PageDown ? area.height * 0.9
                   : event.key === Qt.Key_PageUp ? -area.height * 0.9
                   : event.key === Qt.Key_Home ? -area.contentHeight
                   : event.key === Qt.Key_End ? area.contentHeight
                   : event.key === Qt.Key_Down ? 48 : event.key === Qt.Key_Up ? -48 : 0;
        if (step !== 0) {
            scrollTo(area.contentY + step);
            event.accepted = true;
        }
    }
}
