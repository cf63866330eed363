pragma Singleton

import QtQuick
import Cirrovane

// Every colour, distance and type size of the look, once. The two styles differ only in the backdrop and the cards.
QtObject {
    // Set by the application from the user's settings.
    property bool isClassic: false
    property bool motionEnabled: true

    // The linter of Qt 6.4 does not know Qt.application.font.
    readonly property string family: Qt.application.font.family // qmllint disable
    readonly property string monospacedFamily: Qt.platform.os === "osx" ? "Menlo" : "monospace"
    // For figures that change in place: each as wide as the others. The text's own face where it has such figures, else
    // the first face here that has them.
    property string figuresFamily: family
    // For the verdict. The text's own face where none of the rounded ones is installed.
    property string roundedFamily: family

    property FontMetrics metrics: FontMetrics {
    }

    function hasEvenFigures(face: string): bool {
        metrics.font.family = face;
        const width = metrics.advanceWidth("0000");
        return [1, 2, 3, 4, 5, 6, 7, 8, 9].every(figure => metrics.advanceWidth(String(figure).repeat(4)) === width);
    }

    Component.onCompleted: {
        const installed = Qt.fontFamilies();
        const firstOf = (faces, isFit) => faces.filter(face => installed.includes(face)).find(isFit) ?? family;
        const plain = ["Helvetica Neue", "Noto Sans", "Liberation Sans", "Nimbus Sans", "DejaVu Sans"];
        figuresFamily = hasEvenFigures(family) ? family : firstOf(plain, hasEvenFigures);
        roundedFamily = firstOf(["SF Pro Rounded", "Arial Rounded MT Bold", "Quicksand"], () => true);
    }

    // Type sizes, in pixels
    readonly property int titleSize: 30
    readonly property int dialSize: 36
    readonly property int verdictSize: 64
    readonly property int countSize: 22
    readonly property int numberSize: 19
    readonly property int headingSize: 17
    readonly property int headlineSize: 14
    readonly property int bodySize: 14
    readonly property int subheadlineSize: 13
    readonly property int smallSize: 12
    readonly property int captionSize: 11

    // Distances
    readonly property int pagePadding: 22
    readonly property int pageSpacing: 16
    readonly property int pageWidth: 980
    readonly property int wideWidth: 900
    readonly property int cardSpacing: 12
    readonly property int cardPadding: 16
    readonly property int rowSpacing: 8
    readonly property int tightSpacing: 4
    readonly property int controlHeight: 30
    readonly property int controlPadding: 12
    readonly property int controlRadius: 8

    // Text
    readonly property color text: Tone.color(Tone.Plain)
    readonly property color subtitleText: Qt.rgba(1, 1, 1, 0.84)
    readonly property color secondaryText: Qt.rgba(1, 1, 1, 0.78)
    readonly property color dimmedText: Tone.color(Tone.Neutral)
    readonly property color selection: Qt.rgba(0.20, 0.60, 0.86, 0.55)

    // Signals: the tones' colours, which the tray icon has too.
    readonly property color green: Tone.color(Tone.Good)
    readonly property color yellow: Tone.color(Tone.Caution)
    readonly property color orange: Tone.color(Tone.Warning)
    readonly property color red: Tone.color(Tone.Critical)
    readonly property color cyan: Tone.color(Tone.Info)

    // Ornaments
    readonly property color teal: "#40c8e0"
    readonly property color blue: "#0a84ff"
    readonly property color accent: "#3d9bff"

    // Controls
    readonly property color controlFill: Qt.rgba(1, 1, 1, 0.08)
    readonly property color controlHover: Qt.rgba(1, 1, 1, 0.14)
    readonly property color controlPressed: Qt.rgba(1, 1, 1, 0.20)
    readonly property color controlOutline: Qt.rgba(1, 1, 1, 0.24)
    readonly property color selectedFill: Qt.rgba(1, 1, 1, 0.20)
    readonly property color focusRing: "#8ec5ff"
    readonly property color divider: Qt.rgba(1, 1, 1, 0.14)
    readonly property color pillFill: Qt.rgba(1, 1, 1, 0.06)
    readonly property color popupFill: "#1b2735"
    readonly property color popupOutline: Qt.rgba(1, 1, 1, 0.22)
    readonly property color scrim: Qt.rgba(0, 0, 0, 0.55)

    // Cards
    readonly property int cardRadius: isClassic ? 18 : 20
    readonly property color cardFill: isClassic ? Qt.rgba(1, 1, 1, 0.12) : Qt.rgba(0.10, 0.15, 0.21, 0.50)
    readonly property color cardOutlineStart: isClassic ? Qt.rgba(1, 1, 1, 0.20) : Qt.rgba(1, 1, 1, 0.35)
    readonly property color cardOutlineEnd: isClassic ? Qt.rgba(1, 1, 1, 0.20) : Qt.rgba(1, 1, 1, 0.10)

    // Backdrops
    readonly property color liquidTop: Qt.rgba(0.04, 0.10, 0.16, 1)
    readonly property color liquidBottom: Qt.rgba(0.01, 0.03, 0.07, 1)
    readonly property color classicTop: Qt.rgba(0.09, 0.12, 0.18, 1)
    readonly property color classicBottom: Qt.rgba(0.04, 0.05, 0.10, 1)
    readonly property color orbOne: Qt.rgba(teal.r, teal.g, teal.b, 0.32)
    readonly property color orbTwo: Qt.rgba(blue.r, blue.g, blue.b, 0.28)

    readonly property int hoverDuration: motionEnabled ? 120 : 0
}
