import QtQuick

// A blocker in a list of very many. The keyboard is on the row itself, and Tab leads from there to its buttons.
Item {
    id: row

    required property int index
    required property string key
    required property string name
    required property string reason
    required property string folderName
    required property string path
    required property string details
    required property string amount
    required property bool isStuck

    readonly property bool isCurrent: ListView.isCurrentItem
    // The whole of what the row has no room for; empty when it has.
    readonly property string cut: pointer.hovered && (title.truncated || about.truncated || place.truncated)
                                  ? path + "\n" + details : ""

    signal picked
    signal revealRequested
    signal copyRequested
    signal menuRequested(x: real, y: real)

    // Four divides it: that far down a list of half a million rows, a place on the screen is no finer.
    height: 76
    // Nothing can leave the way of the Tab key while it has the keyboard.
    activeFocusOnTab: isCurrent || activeFocus

    Accessible.role: Accessible.ListItem
    Accessible.name: reason + ": " + name + (isStuck ? ", Stuck" : "") + (amount.length > 0 ? ", " + amount : "")
    Accessible.description: folderName + ", " + path + ", " + details
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: isCurrent
    Accessible.onPressAction: row.revealRequested()

    HoverHandler {
        id: pointer
    }
    TapHandler {
        onTapped: row.picked()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => {
            row.picked();
            row.menuRequested(point.position.x, point.position.y);
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 2
        anchors.bottomMargin: 3
        radius: Theme.controlRadius
        color: row.isCurrent ? Theme.controlFill : "transparent"
        border.width: row.activeFocus ? 2 : 0
        border.color: Theme.focusRing
    }
    Rectangle {
        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        height: 1
        color: Theme.divider
    }
    Symbol {
        name: "exclamationmark.circle.fill"
        color: row.isStuck ? Theme.red : Theme.orange
        size: 18
        x: 8
        anchors.verticalCenter: parent.verticalCenter
    }
    AppLabel {
        id: title
        text: row.name
        elide: Text.ElideMiddle
        font.weight: Font.DemiBold
        anchors {
            left: parent.left
            leftMargin: 36
            right: stuck.visible ? stuck.left : size.left
            rightMargin: Theme.rowSpacing
            top: parent.top
            topMargin: 9
        }
        Accessible.ignored: true
    }
    StatusBadge {
        id: stuck
        text: "Stuck"
        tone: Tone.Critical
        visible: row.isStuck
        anchors {
            right: size.left
            rightMargin: row.amount.length > 0 ? Theme.rowSpacing : 0
            verticalCenter: title.verticalCenter
        }
    }
    AppLabel {
        id: size
        text: row.amount
        font.pixelSize: Theme.smallSize
        color: Theme.secondaryText
        anchors {
            right: buttons.left
            rightMargin: Theme.cardSpacing
            verticalCenter: title.verticalCenter
        }
        Accessible.ignored: true
    }
    AppLabel {
        id: about
        text: row.reason + " · " + row.folderName + " · " + row.details
        font.pixelSize: Theme.smallSize
        color: Theme.secondaryText
        anchors {
            left: title.left
            right: size.right
            top: title.bottom
            topMargin: 3
        }
        Accessible.ignored: true
    }
    AppLabel {
        id: place
        text: row.path
        elide: Text.ElideMiddle
        font.pixelSize: Theme.smallSize
        color: Theme.dimmedText
        anchors {
            left: title.left
            right: size.right
            top: about.bottom
            topMargin: 2
        }
        Accessible.ignored: true
    }
    Row {
        id: buttons
        spacing: Theme.rowSpacing
        height: parent.height
        anchors.right: parent.right
        anchors.rightMargin: 8

        // Only those of the current row are on the way of the Tab key.
        ActionButton {
            isCompact: true
            focusPolicy: row.isCurrent || activeFocus ? Qt.TabFocus : Qt.NoFocus
            description: row.path
            anchors.verticalCenter: parent.verticalCenter
            text: "Reveal in Finder"
            onClicked: {
                row.picked();
                row.revealRequested();
            }
        }
        ActionButton {
            isCompact: true
            focusPolicy: row.isCurrent || activeFocus ? Qt.TabFocus : Qt.NoFocus
            description: row.path
            anchors.verticalCenter: parent.verticalCenter
            text: "Copy Path"
            onClicked: {
                row.picked();
                row.copyRequested();
            }
        }
    }
}
