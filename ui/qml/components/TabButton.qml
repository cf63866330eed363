import QtQuick
import QtQuick.Templates as T

// A tab of the tab bar: its symbol and title, on a capsule when it is chosen.
// Its role is the template's own: a control keeps that, whatever it is told.
T.TabButton {
    id: button

    required property string symbolName
    required property bool isChosen
    // Closer to its neighbours, where all of them are to fit.
    property bool isCompact: false

    implicitHeight: 32
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: isCompact ? 5 : 10
    rightPadding: leftPadding
    focusPolicy: Qt.StrongFocus
    // What is chosen is decided elsewhere.
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

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: isChosen
    Accessible.onPressAction: button.clicked()
}
