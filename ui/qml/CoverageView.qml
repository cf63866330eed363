pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Cirrovane

// A sheet over the window that goes through what the verdict does not vouch for.
Sheet {
    id: sheet

    required property PageContext context

    title: "Not Vouched For"
    width: Math.min(680, (parent ? parent.width : 640) - 48)
    height: Math.min(list.count > 0 ? 720 : 240, (parent ? parent.height : 700) - 48)
    onAboutToShow: coverage.opened()

    CoverageViewModel {
        id: coverage
        context: sheet.context
    }

    component Detail: AppText {
        visible: text.length > 0
        font.pixelSize: Theme.smallSize
        color: Theme.dimmedText
        Layout.fillWidth: true
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.cardSpacing

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        RowLayout {
            spacing: Theme.rowSpacing
            Layout.fillWidth: true

            AppText {
                text: sheet.title
                font.pixelSize: Theme.headingSize
                font.weight: Font.Bold
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
            }
            RescanButton {
                text: "Look Again"
                isScanning: coverage.isLooking
                busyText: "A look is under way"
                onClicked: coverage.lookAgain()
                Layout.fillWidth: false
            }
            ActionButton {
                id: closeButton
                text: "Close"
                focus: true
                onClicked: sheet.close()
            }
        }
        AppText {
            text: coverage.summary
            font.pixelSize: Theme.subheadlineSize
            Layout.fillWidth: true
        }
        Detail {
            text: coverage.lookedAt
        }
        WarningText {
            text: coverage.failure
        }
        Divider {
        }

        ListView {
            id: list

            // The row that the user has just acted on; the keyboard goes to what comes in its place.
            property int acted: -1
            readonly property bool isChanging: coverage.isChanging

            function focusInPlaceOf(row) {
                const next = Math.min(row, count - 1);
                if (next >= 0) {
                    positionViewAtIndex(next, ListView.Contain);
                    (itemAtIndex(next) as GapRow)?.control.forceActiveFocus(Qt.OtherFocusReason);
                }
                if (!activeFocus) {
                    closeButton.forceActiveFocus(Qt.OtherFocusReason);
                }
            }

            model: coverage.rows
            spacing: Theme.cardSpacing
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            // Makes rows ahead, a few at a time: a screen reader hears of no others.
            cacheBuffer: 6000
            activeFocusOnTab: false
            keyNavigationEnabled: false
            currentIndex: -1
            highlightFollowsCurrentItem: false
            Layout.fillWidth: true
            Layout.fillHeight: true
            onIsChangingChanged: {
                if (!isChanging && acted >= 0) {
                    focusInPlaceOf(acted);
                    acted = -1;
                }
            }

            Accessible.role: Accessible.List
            Accessible.name: sheet.title

            T.ScrollBar.vertical: ScrollIndicator {
            }

            delegate: GapRow {
                required property int index

                width: ListView.view.width - 14
                isChanging: coverage.isChanging
                onReached: list.positionViewAtIndex(index, ListView.Contain)
                onRevealRequested: coverage.reveal(index)
                onAcknowledged: time => {
                    list.acted = index;
                    if (time === "week") {
                        coverage.acknowledgeForAWeek(index);
                    } else {
                        coverage.acknowledgeForGood(index);
                    }
                }
                onForgotten: {
                    list.acted = index;
                    coverage.forget(index);
                }
            }
        }
    }
}
