import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

Item {
    id: root
    width: 500
    height: 400

    Component {
        id: component

        PremiumCard {
            width: 300
            heading: "Recent scans"

            AppLabel {
                text: "First"
            }
            AppLabel {
                text: "Second"
            }
        }
    }

    ComponentCase {
        name: "PremiumCard"

        function make() {
            return createTemporaryObject(component, root);
        }

        function cleanup() {
            Theme.isClassic = false;
        }

        function test_card_isAGroupOfItsHeading() {
            compare(ScreenReader.heard(make()), ["Grouping Recent scans", "StaticText First", "StaticText Second"]);
        }

        function test_card_content_standsInAColumnWithinThePadding() {
            const card = make();
            const labels = findItems(card, item => item instanceof AppLabel);
            tryVerify(() => labels[1].mapToItem(card, 0, 0).y > 0);
            compare(labels[0].mapToItem(card, 0, 0), Qt.point(Theme.cardPadding, Theme.cardPadding));
            tryVerify(() => labels[1].y === labels[0].height + Theme.cardSpacing);
            compare(card.implicitHeight, 2 * Theme.cardPadding + Theme.cardSpacing + labels[0].height + labels[1].height);
        }

        function test_card_otherStyle_looksOther() {
            const outline = findItem(make(), item => item instanceof CardOutline);
            const liquid = [outline.radius, outline.fill.toString()];
            Theme.isClassic = true;
            compare(outline.radius, 18);
            verify(outline.fill.toString() !== liquid[1]);
            Theme.isClassic = false;
            compare([outline.radius, outline.fill.toString()], liquid);
        }
    }
}
