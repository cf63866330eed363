import QtQuick
import Cirrovane

// The backdrop of every page: in the liquid style two soft lights drift over a dark gradient, in the classic style the
// gradient stands alone.
Item {
    id: backdrop

    required property bool isClassic
    required property bool motionEnabled
    property bool isPaintedByProcessor: GraphicsInfo.api === GraphicsInfo.Software

    Accessible.ignored: true
    clip: true

    // Where the lights are on their way between their two places, 0 to 1.
    property real orbOnePhase: 0
    property real orbTwoPhase: 0

    Rectangle {
        anchors.fill: parent
        visible: backdrop.isClassic
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Theme.classicTop
            }
            GradientStop {
                position: 1
                color: Theme.classicBottom
            }
        }
    }

    DiagonalGradient {
        anchors.fill: parent
        visible: !backdrop.isClassic
        start: Theme.liquidTop
        end: Theme.liquidBottom

        SoftOrb {
            color: Theme.orbOne
            diameter: 420
            blurRadius: 80
            x: backdrop.width / 2 + (-210 + 380 * backdrop.orbOnePhase)
            y: backdrop.height / 2 + (-220 + 140 * backdrop.orbOnePhase)
        }
        SoftOrb {
            color: Theme.orbTwo
            diameter: 380
            blurRadius: 95
            x: backdrop.width / 2 + (210 - 390 * backdrop.orbTwoPhase)
            y: backdrop.height / 2 + (230 - 190 * backdrop.orbTwoPhase)
        }
    }

    // Where the processor paints, each picture costs a repaint of the whole window, and so slow a drift needs few.
    Timer {
        id: drift

        property real elapsed: 0

        interval: backdrop.isPaintedByProcessor ? 250 : 33
        repeat: true
        running: backdrop.visible && backdrop.motionEnabled && !backdrop.isClassic
                 && backdrop.Window.visibility !== Window.Hidden && backdrop.Window.visibility !== Window.Minimized
        onTriggered: {
            elapsed += interval / 1000;
            backdrop.orbOnePhase = Drift.phase(elapsed, 8);
            backdrop.orbTwoPhase = Drift.phase(elapsed, 10);
        }
    }

    onMotionEnabledChanged: {
        if (!motionEnabled) {
            // The next drift begins where the lights are now.
            drift.elapsed = 0;
            orbOnePhase = 0;
            orbTwoPhase = 0;
        }
    }
}
