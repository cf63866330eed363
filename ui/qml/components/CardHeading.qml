import QtQuick
import QtQuick.Layouts

// The heading of a card with a short note at the end of its line.
RowLayout {
    id: row

    required property string heading
    required property string note

    spacing: Theme.rowSpacing
    Layout.fillWidth: true

    AppText {
        text: row.heading
        font.pixelSize: Theme.headingSize
        font.weight: Font.DemiBold
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    AppText {
        text: row.note
        font.pixelSize: Theme.captionSize
        color: Theme.dimmedText
        wrapMode: TextEdit.NoWrap
    }
}
