import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A heading that shows and hides a text below it.
ColumnLayout {
    id: row

    required property string title
    required property string body
    required property bool isExpanded

    signal toggled

    spacing: Theme.rowSpacing

    T.AbstractButton {
        id: heading
        Layout.fillWidth: true
        implicitHeight: Math.max(24, implicitContentHeight)
        focusPolicy: Qt.StrongFocus
        onClicked: row.toggled()

        contentItem: RowLayout {
            spacing: Theme.rowSpacing

            Symbol {
                name: "chevron.right"
                size: 13
                rotation: row.isExpanded ? 90 : 0
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: 4

                Behavior on rotation {
                    enabled: Theme.motionEnabled
                    NumberAnimation {
                        duration: Theme.hoverDuration
                    }
                }
            }
            AppLabel {
                text: row.title
                font.pixelSize: Theme.bodySize
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
                elide: Text.ElideNone
                Layout.fillWidth: true
                Accessible.ignored: true
            }
        }

        FocusRing {
            target: heading
        }

        Keys.onReturnPressed: heading.clicked()
        Keys.onEnterPressed: heading.clicked()

        Accessible.role: Accessible.Button
        Accessible.name: row.title
        Accessible.description: row.isExpanded ? "Expanded" : "Collapsed"
        Accessible.checkable: true
        Accessible.checked: row.isExpanded
        Accessible.onPressAction: heading.clicked()
        Accessible.onToggleAction: heading.clicked()
    }

    AppText {
        text: row.body
        visible: row.isExpanded
        font.pixelSize: Theme.subheadlineSize
        Layout.fillWidth: true
        Layout.leftMargin: 21
    }
}
