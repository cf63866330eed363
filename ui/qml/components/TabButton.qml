import QtQuick
import QtQuick.Templates as T

// A tab of the tab bar: its symbol and title, on a capsule when it is chosen.
// It keeps the template's role: a control ignores any other.
T.TabButton {
    id: button

    required property string symbolName
    required property bool isChosen
    // Whether it stands closer to its neighbours.
    property bool isCompact: false

    implicitHeight: 32
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: isCompact ? 5 : 10
    rightPadding: leftPadding
    focusPolicy: Qt.StrongFocus
    // The owner decides what is chosen.
    checkable: false

    contentItem: Row {
        spacing: button.isCompact ? 5 : 6

        Symbol {
            name: button.symbolName
            size: 15
            anchors.verticalCenter: parent.verticalCenter
        }
        AppLabel {
            text: button.text
            font.pixelSize: button.isCompact ? Theme.smallSize : Theme.subheadlineSize
            font.weight: button.isChosen ? Font.DemiBold : Font.Normal
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: height / 2
        color: button.isChosen ? Theme.selectedFill : button.down ? Theme.controlPressed
             : button.hovered ? Theme.controlFill : "transparent"

        FocusRing {
            target: button
            radius: height / 2
        }
    }

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: isChosen
    Accessible.onPressAction: button.clicked()
}
