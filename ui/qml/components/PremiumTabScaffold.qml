import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A page: its title and subtitle over its content, in one column that scrolls.
FocusScope {
    id: page

    required property string title
    required property string subtitle
    default property alias content: column.data
    // Whether two cards fit beside each other.
    readonly property bool isWide: width >= Theme.wideWidth

    Accessible.role: Accessible.Pane
    Accessible.name: title

    Flickable {
        id: flickable
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * Theme.pagePadding
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        activeFocusOnTab: false

        // Keeps the control that the keyboard has reached in sight.
        function reveal(item) {
            const top = item.mapToItem(contentItem, 0, 0).y;
            if (top < contentY + Theme.pagePadding) {
                contentY = Math.max(0, top - Theme.pagePadding);
            } else if (top + item.height > contentY + height - Theme.pagePadding) {
                contentY = Math.min(Math.max(0, contentHeight - height), top + item.height + Theme.pagePadding - height);
            }
        }

        T.ScrollBar.vertical: ScrollIndicator {
        }

        ColumnLayout {
            id: column
            x: Math.max(Theme.pagePadding, (flickable.width - width) / 2)
            y: Theme.pagePadding
            width: Math.min(flickable.width, Theme.pageWidth) - 2 * Theme.pagePadding
            spacing: Theme.pageSpacing

            ColumnLayout {
                spacing: Theme.tightSpacing
                Layout.fillWidth: true

                AppText {
                    text: page.title
                    font.pixelSize: Theme.titleSize
                    font.weight: Font.Bold
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                AppText {
                    text: page.subtitle
                    font.pixelSize: Theme.subheadlineSize
                    color: Theme.subtitleText
                    Layout.fillWidth: true
                }
            }
        }
    }

    Connections {
        target: page.Window.window
        function onActiveFocusItemChanged() {
            const item = page.Window.window.activeFocusItem;
            for (let parent = item; parent; parent = parent.parent) {
                if (parent === flickable.contentItem) {
                    flickable.reveal(item);
                    return;
                }
            }
        }
    }

    Keys.onPressed: event => {
        const room = Math.max(0, flickable.contentHeight - flickable.height);
        const step = event.key === Qt.Key_PageDown ? flickable.height * 0.9
                   : event.key === Qt.Key_PageUp ? -flickable.height * 0.9
                   : event.key === Qt.Key_Home ? -room : event.key === Qt.Key_End ? room
                   : event.key === Qt.Key_Down ? 48 : event.key === Qt.Key_Up ? -48 : 0;
        if (step !== 0) {
            flickable.contentY = Math.max(0, Math.min(room, flickable.contentY + step));
            event.accepted = true;
        }
    }
}
