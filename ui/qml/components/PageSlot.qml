import QtQuick

// Shows one page at a time. In Qt 6.4 a Loader cannot make what is bound to the file that it stands in.
// The first page is made once its window has begun to draw: the window is there sooner, and the page not later.
FocusScope {
    id: slot

    required property Component page
    property Item shown: null
    property bool isDrawn: false

    function show() {
        if (!isDrawn) {
            return;
        }
        if (shown) {
            shown.visible = false;
            shown.destroy();
        }
        shown = page.createObject(slot) as Item;
        shown.anchors.fill = slot;
    }

    onPageChanged: show()

    Connections {
        target: slot.Window.window
        enabled: !slot.isDrawn

        // In the main thread, just before the first picture is handed over.
        function onAfterAnimating() {
            begin.start();
        }
    }
    Timer {
        id: begin
        interval: 0
        onTriggered: {
            slot.isDrawn = true;
            slot.show();
        }
    }
}
