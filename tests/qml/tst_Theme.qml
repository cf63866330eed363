import QtQuick
import QtTest
import Cirrovane

ComponentCase {
    name: "Theme"

    function cleanup() {
        Theme.isClassic = false;
        Theme.motionEnabled = true;
    }

    function test_signal_isTheColourOfItsTone_data() {
        return [
            {tag: "green", tone: Tone.Good},
            {tag: "yellow", tone: Tone.Caution},
            {tag: "orange", tone: Tone.Warning},
            {tag: "red", tone: Tone.Critical},
            {tag: "cyan", tone: Tone.Info},
            {tag: "dimmedText", tone: Tone.Neutral},
            {tag: "text", tone: Tone.Plain}
        ];
    }

    function test_signal_isTheColourOfItsTone(data) {
        compare(String(Theme[data.tag]), String(Tone.color(data.tone)));
    }

    function test_style_cards_differ() {
        const liquid = [Theme.cardFill, Theme.cardOutlineStart, Theme.cardOutlineEnd, Theme.cardRadius].map(String);
        Theme.isClassic = true;
        const classic = [Theme.cardFill, Theme.cardOutlineStart, Theme.cardOutlineEnd, Theme.cardRadius].map(String);
        for (let index = 0; index < liquid.length; ++index) {
            verify(liquid[index] !== classic[index], liquid[index]);
        }
    }

    function test_style_classicOutline_isOfOneColour() {
        Theme.isClassic = true;
        compare(Theme.cardOutlineStart, Theme.cardOutlineEnd);
        Theme.isClassic = false;
        verify(!Qt.colorEqual(Theme.cardOutlineStart, Theme.cardOutlineEnd));
    }

    function test_style_textAndSignals_areTheSame() {
        const liquid = [Theme.text, Theme.dimmedText, Theme.green, Theme.red, Theme.popupFill].map(String);
        Theme.isClassic = true;
        compare([Theme.text, Theme.dimmedText, Theme.green, Theme.red, Theme.popupFill].map(String), liquid);
    }

    FontMetrics {
        id: figures
        font.family: Theme.figuresFamily
        font.pixelSize: 100
    }

    function test_figures_areOfOneWidthInAFaceThatIsNotMonospaced() {
        for (const figure of "123456789") {
            compare(figures.advanceWidth(figure), figures.advanceWidth("0"), figure);
        }
        verify(figures.advanceWidth("i") < figures.advanceWidth("m"));
    }

    function test_verdictsFace_isInstalled() {
        verify(Qt.fontFamilies().includes(Theme.roundedFamily));
    }

    function test_motion_off_leavesNoTimeToHovering() {
        verify(Theme.hoverDuration > 0);
        Theme.motionEnabled = false;
        compare(Theme.hoverDuration, 0);
    }
}
