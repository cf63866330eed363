import QtQuick

// Shows one page at a time. A Loader of Qt 6.4 cannot make a component that is bound to its file.
// The first page is made once its window draws: the window comes sooner, and the page no later.
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

        // Comes on the main thread, just before the first picture.
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
