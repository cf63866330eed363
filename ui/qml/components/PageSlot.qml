import QtQuick

// Shows one page at a time. In Qt 6.4 a Loader cannot make what is bound to the file that it stands in.
FocusScope {
    id: slot

    required property Component page
    property Item shown: null

    function show() {
        if (shown) {
            shown.visible = false;
            shown.destroy();
        }
        shown = page.createObject(slot) as Item;
        shown.anchors.fill = slot;
    }

    onPageChanged: show()
}
