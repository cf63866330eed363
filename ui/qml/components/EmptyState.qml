import QtQuick
import QtQuick.Layouts

// What stands in the place of a list that is empty.
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
