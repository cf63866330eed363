import QtQuick
import QtQuick.Templates as T

// An on/off switch with its label.
T.Switch {
    id: control

    // Whether the label stands beside the switch. A screen reader hears it in any case.
    property bool showsLabel: true
    property bool isOn: false

    signal switched(on: bool)

    function flip() {
        // The toolkit does not tell a screen reader that a control is disabled, so it may still ask for this.
        if (enabled) {
            toggle();
            toggled();
        }
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight)
    rightPadding: showsLabel && text.length > 0 ? implicitIndicatorWidth + 10 : implicitIndicatorWidth
    focusPolicy: Qt.StrongFocus
    checked: isOn
    onToggled: {
        const wanted = checked;
        checked = Qt.binding(() => control.isOn);
        control.switched(wanted);
    }

    contentItem: AppLabel {
        text: control.showsLabel ? control.text : ""
        visible: control.showsLabel
        font.pixelSize: Theme.subheadlineSize
        Accessible.ignored: true
    }

    indicator: Rectangle {
        x: control.width - width
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 38
        implicitHeight: 22
        radius: height / 2
        color: control.isOn ? Theme.green : Theme.controlPressed
        border.width: 1
        border.color: Theme.controlOutline

        Rectangle {
            x: control.isOn ? parent.width - width - 2 : 2
            anchors.verticalCenter: parent.verticalCenter
            width: 18
            height: 18
            radius: 9
            color: "#ffffff"

            Behavior on x {
                enabled: Theme.motionEnabled
                NumberAnimation {
                    duration: Theme.hoverDuration
                }
            }
        }

        FocusRing {
            target: control
            radius: height / 2
        }
    }

    Keys.onReturnPressed: control.flip()
    Keys.onEnterPressed: control.flip()

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: isOn
    Accessible.onPressAction: control.flip()
    Accessible.onToggleAction: control.flip()
}
