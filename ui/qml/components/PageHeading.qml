import QtQuick
import QtQuick.Layouts

// A page's title over its subtitle.
ColumnLayout {
    id: heading

    required property string title
    required property string subtitle

    spacing: Theme.tightSpacing
    Layout.fillWidth: true

    AppText {
        text: heading.title
        font.pixelSize: Theme.titleSize
        font.weight: Font.Bold
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    AppText {
        text: heading.subtitle
        font.pixelSize: Theme.subheadlineSize
        color: Theme.subtitleText
        Layout.fillWidth: true
    }
}
