pragma ComponentBehavior: Bound

import QtQuick
import Cirrovane

// The most serious blockers.
PremiumCard {
    id: card

    required property PageContext context

    signal allRequested

    heading: "Top Blockers"

    BlockersViewModel {
        id: blockers
        context: card.context
    }

    CardHeading {
        heading: card.heading
        note: blockers.countText
    }
    EmptyState {
        visible: blockers.isEmpty
        title: blockers.emptyTitle
        subtitle: blockers.emptySubtitle
    }
    Repeater {
        model: blockers.rows

        BlockerRow {
            required property int index

            onRevealRequested: blockers.reveal(index)
        }
    }
    ActionButton {
        text: "Show All"
        visible: !blockers.isEmpty
        description: "Opens the list of all blockers"
        onClicked: card.allRequested()
    }
}
