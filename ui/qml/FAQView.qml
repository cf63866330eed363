pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Cirrovane

PremiumTabScaffold {
    id: page

    title: "FAQ"
    subtitle: "Clear answers for trust, scoring, and safety decisions."

    FAQModel {
        id: faq
    }

    Repeater {
        model: faq.questions

        PremiumCard {
            id: card

            required property int index
            required property string question
            required property string answer
            required property bool expanded

            heading: question

            DisclosureRow {
                title: card.question
                body: card.answer
                isExpanded: card.expanded
                onToggled: faq.toggle(card.index)
                Layout.fillWidth: true
            }
        }
    }
}
