import QtQuick
import QtQuick.Layouts
import Cirrovane

// A sheet over the window that names the program and its build.
Sheet {
    id: about

    required property string buildLabel

    title: "About Cirrovane"
    height: Math.min(implicitContentHeight + topPadding + bottomPadding, (parent ? parent.height : 700) - 48)
    width: Math.min(420, (parent ? parent.width : 640) - 48)

    contentItem: ColumnLayout {
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: about.title

        AppText {
            text: "Cirrovane"
            font.pixelSize: Theme.headingSize
            font.weight: Font.Bold
            Layout.fillWidth: true
            Accessible.role: Accessible.Heading
        }
        AppText {
            text: about.buildLabel
            Layout.fillWidth: true
        }
        AppText {
            text: "Is it safe to close this Mac without losing work that has not reached iCloud Drive?"
            font.pixelSize: Theme.captionSize
            color: Theme.dimmedText
            Layout.fillWidth: true
        }
        ActionButton {
            text: "Close"
            focus: true
            onClicked: about.close()
            Layout.alignment: Qt.AlignRight
        }
    }
}
