import QtQuick
import QtQuick.Templates as T

// A button: a symbol, a text, or both. Bordered unless it is plain.
T.Button {
    id: button

    property string symbolName: ""
    property bool isPlain: false
    property bool isChosen: false
    // Whether it takes less room to its sides.
    property bool isCompact: false
    property real symbolAngle: 0
    // What a screen reader says besides the text.
    property string description: ""
    property color tint: Theme.text

    implicitHeight: Theme.controlHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: isCompact ? Theme.rowSpacing : Theme.controlPadding
    rightPadding: leftPadding
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.5

    contentItem: Item {
        // An id would make these for a button with other content too.
        implicitWidth: children[0].implicitWidth
        implicitHeight: children[0].implicitHeight

        Row {
            spacing: 6
            anchors.centerIn: parent

            Symbol {
                name: button.symbolName.length > 0 ? button.symbolName : "xmark"
                visible: button.symbolName.length > 0
                size: 15
                rotation: button.symbolAngle
                color: button.tint
                anchors.verticalCenter: parent.verticalCenter
            }
            AppLabel {
                text: button.text
                visible: button.text.length > 0
                color: button.tint
                font.pixelSize: Theme.subheadlineSize
                font.weight: Font.Medium
                anchors.verticalCenter: parent.verticalCenter
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: button.down ? Theme.controlPressed : button.hovered ? Theme.controlHover
             : button.isChosen ? Theme.selectedFill : button.isPlain ? "transparent" : Theme.controlFill
        border.width: button.isPlain ? 0 : 1
        border.color: Theme.controlOutline

        FocusRing {
            target: button
        }
    }

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: description
    Accessible.onPressAction: if (button.enabled) button.clicked()
}
