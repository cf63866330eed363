import QtQuick
import QtTest
import Cirrovane
import CirrovaneTest

// What only shows and says something.
Item {
    id: root
    width: 400
    height: 300

    Component {
        id: pillComponent

        MetricPill {
            title: "Files"
            value: "1,204"
        }
    }
    Component {
        id: badgeComponent

        StatusBadge {
            text: "Open"
            tone: Tone.Critical
        }
    }
    Component {
        id: rowComponent

        LabelValueRow {
            width: 300
            label: "Watched folder"
            value: "Documents"
        }
    }
    Component {
        id: emptyComponent

        EmptyState {
            width: 300
            title: "No incidents"
            subtitle: "Nothing has been recorded yet."
        }
    }

    ComponentCase {
        name: "Words"

        function labels(item) {
            return findItems(item, child => child instanceof AppLabel);
        }

        function test_pill_isHeardAsOneThing() {
            compare(ScreenReader.heard(createTemporaryObject(pillComponent, root)), ["StaticText Files 1,204"]);
        }

        function test_pill_newValue_isSeenAndHeard() {
            const pill = createTemporaryObject(pillComponent, root);
            pill.value = "7";
            compare(ScreenReader.name(pill), "Files 7");
            compare(labels(pill).map(label => label.text), ["Files", "7"]);
        }

        function test_pill_tone_isOfTheValueAlone() {
            const pill = createTemporaryObject(pillComponent, root, {tone: Tone.Warning});
            compare(String(labels(pill)[0].color), String(Theme.dimmedText));
            compare(String(labels(pill)[1].color), String(Theme.orange));
        }

        function test_pill_longValue_hasTheRoomItNeeds() {
            const pill = createTemporaryObject(pillComponent, root);
            pill.value = "1";
            tryCompare(pill, "width", 58);
            pill.value = "1,234,567,890";
            tryVerify(() => pill.width > 58);
            verify(!labels(pill)[1].truncated);
        }

        function test_badge_isHeardByItsWord() {
            verify(ScreenReader.find(createTemporaryObject(badgeComponent, root), "StaticText", "Open"));
        }

        function test_badge_tone_isOfTheGroundAlone() {
            const badge = createTemporaryObject(badgeComponent, root);
            compare(labels(badge)[0].color, Theme.text);
            compare(badge.color, Qt.rgba(Theme.red.r, Theme.red.g, Theme.red.b, 0.22));
            compare(badge.radius, badge.height / 2);
        }

        function test_row_isHeardAsOneThing() {
            compare(ScreenReader.heard(createTemporaryObject(rowComponent, root)), ["StaticText Watched folder Documents"]);
        }

        function test_row_value_standsAtTheEndAndCanBeSelected() {
            const row = createTemporaryObject(rowComponent, root);
            const value = findItem(row, child => child instanceof AppText);
            tryVerify(() => value.x + value.width === row.width);
            compare(value.horizontalAlignment, TextEdit.AlignRight);
            value.selectAll();
            compare(value.selectedText, "Documents");
        }

        function test_row_longValue_wraps() {
            const row = createTemporaryObject(rowComponent, root);
            const height = row.implicitHeight;
            row.value = "A folder whose name is so long that it does not stand beside the label in one line";
            tryVerify(() => row.implicitHeight > height);
        }

        function test_emptyState_saysBoth() {
            const state = createTemporaryObject(emptyComponent, root);
            const heard = ScreenReader.heard(state).join("\n");
            verify(heard.indexOf("No incidents") >= 0, heard);
            verify(heard.indexOf("Nothing has been recorded yet.") >= 0, heard);
        }
    }
}
