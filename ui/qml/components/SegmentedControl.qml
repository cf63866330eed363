pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

// A choice of one among a few, all in sight.
FocusScope {
    id: control

    // Each choice with its title and the value that it stands for.
    required property var choices
    required property string value
    required property string label

    signal chosen(value: string)

    implicitWidth: row.implicitWidth + 4
    implicitHeight: Theme.controlHeight

    Accessible.role: Accessible.Grouping
    Accessible.name: label

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.controlFill
        border.width: 1
        border.color: Theme.controlOutline
    }

    Row {
        id: row
        anchors.centerIn: parent
        height: parent.height - 4

        Repeater {
            id: segments
            model: control.choices

            T.RadioButton {
                id: segment

                required property int index
                required property string title
                required property string value
                readonly property bool isChosen: value === control.value

                text: title
                height: row.height
                implicitWidth: Math.max(64, implicitContentWidth + 2 * Theme.controlPadding)
                focusPolicy: Qt.StrongFocus
                hoverEnabled: true
                checked: isChosen
                autoExclusive: false
                onClicked: control.chosen(value)
                // The template checks the button by itself, but the owner decides what is chosen.
                onToggled: checked = Qt.binding(() => segment.isChosen)

                contentItem: AppLabel {
                    text: segment.text
                    font.pixelSize: Theme.subheadlineSize
                    font.weight: segment.isChosen ? Font.DemiBold : Font.Normal
                    horizontalAlignment: Text.AlignHCenter
                    Accessible.ignored: true
                }
                background: Rectangle {
                    radius: Theme.controlRadius - 2
                    color: segment.isChosen ? Theme.selectedFill : segment.hovered ? Theme.controlFill : "transparent"

                    FocusRing {
                        target: segment
                    }
                }

                Keys.onRightPressed: segments.itemAt(index + 1)?.forceActiveFocus(Qt.TabFocusReason)
                Keys.onLeftPressed: segments.itemAt(index - 1)?.forceActiveFocus(Qt.BacktabFocusReason)
                Keys.onReturnPressed: segment.clicked()
                Keys.onEnterPressed: segment.clicked()

                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: isChosen
                Accessible.onPressAction: segment.clicked()
                Accessible.onToggleAction: segment.clicked()
            }
        }
    }
}
