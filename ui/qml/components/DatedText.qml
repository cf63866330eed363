import QtQuick

// A text with a time of day. Its tooltip and a screen reader tell the day.
AppText {
    id: text

    required property string date

    Accessible.description: date

    HoverArea {
        id: pointer
    }
    AppToolTip {
        text: text.date
        visible: pointer.containsMouse && text.date.length > 0
    }
}
