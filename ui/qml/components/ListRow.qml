import QtQuick

// A card that is a row of a list.
PremiumCard {
    id: row

    required property int index
    // What the keyboard acts on.
    required property Item control
    readonly property bool hasFocus: control.activeFocus

    // A list keeps its current row while it is scrolled out of sight.
    onHasFocusChanged: if (hasFocus) ListView.view.currentIndex = index
}
