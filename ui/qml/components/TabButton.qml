import QtQuick
import QtQuick.Templates as T

// A tab of the tab bar: its symbol and title, on a capsule when it is chosen.
T.Button {
    id: button

    required property string symbolName
    required property bool isChosen

    implicitHeight: 32
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: 12
    rightPadding: 12
    focusPolicy: Qt.StrongFocus

    contentItem: Row {
        spacing: 6

        Symbol {
            name: button.symbolName
            size: 15
            anchors.verticalCenter: parent.verticalCenter
        }
        AppLabel {
            text: button.text
            font.pixelSize: Theme.subheadlineSize
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

    Keys.onReturnPressed: button.click()
    Keys.onEnterPressed: button.click()

    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: isChosen
    Accessible.onPressAction: button.click()
}
