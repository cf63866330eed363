import QtQuick
import QtQuick.Templates as T

// Shows the whole of an elided text while the pointer rests on it. A screen reader has the whole text anyway.
T.ToolTip {
    id: toolTip

    // Measured by the text alone, since a wrapped label's implicit width depends on its width.
    readonly property TextMetrics metrics: TextMetrics {
        text: toolTip.text
        font.pixelSize: Theme.smallSize
    }

    x: 0
    y: parent ? parent.height + 4 : 0
    margins: 8
    padding: 8
    delay: 500
    implicitWidth: Math.min(Math.ceil(metrics.advanceWidth) + 1 + leftPadding + rightPadding,
                            (parent && parent.Window.window ? parent.Window.width : 520) - 2 * margins, 520)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Text {
        text: toolTip.text
        textFormat: Text.PlainText
        wrapMode: Text.WrapAnywhere
        color: Theme.text
        font.pixelSize: Theme.smallSize
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: 8
        color: Theme.popupFill
        border.width: 1
        border.color: Theme.popupOutline
    }
}
