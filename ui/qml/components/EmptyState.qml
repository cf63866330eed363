import QtQuick
import QtQuick.Layouts

// Stands in the place of an empty list.
ColumnLayout {
    id: state

    required property string title
    required property string subtitle

    spacing: Theme.tightSpacing

    AppText {
        text: state.title
        font.weight: Font.DemiBold
        Layout.fillWidth: true
    }
    AppText {
        text: state.subtitle
        font.pixelSize: Theme.subheadlineSize
        color: Theme.dimmedText
        Layout.fillWidth: true
    }
}
