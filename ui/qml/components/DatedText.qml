import QtQuick

// A time of day, or a text with one, whose day is told to who points at it and to a screen reader.
AppText {
    id: text

    required property string date

    Accessible.description: date

    HoverHandler {
        id: pointer
    }
    AppToolTip {
        text: text.date
        visible: pointer.hovered && text.date.length > 0
    }
}
