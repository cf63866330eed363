import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A page: its title and subtitle over its content, in one column that scrolls.
ScrollingPage {
    id: page

    default property alias content: column.data
    property alias spacing: column.spacing
    // Whether title and subtitle stand above the content.
    property bool showsHeading: true

    area: flickable

    Flickable {
        id: flickable
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * Theme.pagePadding
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        activeFocusOnTab: false

        T.ScrollBar.vertical: ScrollIndicator {
        }

        ColumnLayout {
            id: column
            x: page.columnX
            y: Theme.pagePadding
            width: page.columnWidth
            spacing: Theme.pageSpacing

            PageHeading {
                visible: page.showsHeading
                title: page.title
                subtitle: page.subtitle
            }
        }
    }
}
