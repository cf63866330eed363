pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

// Something that a verdict does not vouch for, or that the user has acknowledged, and what can be done about it. The
// first one of a kind has the kind's heading and note above it.
ColumnLayout {
    id: row

    required property string heading
    required property string note
    required property string path
    required property string detail
    // How many of the kind are counted only.
    required property string more
    required property bool canReveal
    required property bool canAcknowledge
    required property bool canForget
    // Whether a change is on its way, before which there is no other.
    required property bool isChanging
    // What the keyboard acts on first.
    readonly property Item control: reveal

    // The keyboard came here.
    signal reached
    signal revealRequested
    // For a "week", or for "good".
    signal acknowledged(time: string)
    signal forgotten

    component Detail: AppText {
        visible: text.length > 0
        font.pixelSize: Theme.smallSize
        color: Theme.dimmedText
        Layout.fillWidth: true
    }

    spacing: 2

    AppText {
        text: row.heading
        visible: text.length > 0
        font.weight: Font.DemiBold
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    AppText {
        text: row.note
        visible: text.length > 0
        font.pixelSize: Theme.subheadlineSize
        color: Theme.secondaryText
        Layout.fillWidth: true
        Layout.bottomMargin: Theme.tightSpacing
    }
    RowLayout {
        visible: row.path.length > 0
        spacing: Theme.rowSpacing
        Layout.fillWidth: true

        ColumnLayout {
            spacing: 2
            Layout.fillWidth: true

            FilePathText {
                path: row.path
                color: Theme.text
                onActiveFocusChanged: if (activeFocus) row.reached()
                Layout.fillWidth: true
            }
            Detail {
                text: row.detail
            }
        }
        ActionButton {
            id: reveal
            text: "Reveal in Finder"
            description: row.path
            visible: row.canReveal
            onActiveFocusChanged: if (activeFocus) row.reached()
            onClicked: row.revealRequested()
        }
        DropDownMenu {
            text: "Acknowledge"
            description: row.path
            visible: row.canAcknowledge
            enabled: !row.isChanging
            entries: times
            onActiveFocusChanged: if (activeFocus) row.reached()
            onPicked: name => row.acknowledged(name)
        }
        ActionButton {
            text: "Forget"
            description: row.path
            visible: row.canForget
            enabled: !row.isChanging
            onActiveFocusChanged: if (activeFocus) row.reached()
            onClicked: row.forgotten()
        }
    }
    Detail {
        text: row.more
    }

    ListModel {
        id: times

        ListElement {
            name: "week"
            title: "For a Week"
            symbol: ""
        }
        ListElement {
            name: "good"
            title: "For Good"
            symbol: ""
        }
    }
}
