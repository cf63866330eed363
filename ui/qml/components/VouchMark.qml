import QtQuick

// Stands beside a YES that does not vouch for all. A screen reader says why.
Item {
    id: mark

    // For what the YES does not vouch; without it there is no mark.
    required property string note
    property real size: 22

    visible: note.length > 0
    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.Graphic
    Accessible.name: note

    Symbol {
        name: "exclamationmark.circle.fill"
        color: Theme.yellow
        size: mark.size
    }
    HoverHandler {
        id: pointer
    }
    AppToolTip {
        text: mark.note
        visible: pointer.hovered
    }
}
