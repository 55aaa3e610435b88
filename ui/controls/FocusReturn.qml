// SPDX-License-Identifier: MIT
import QtQuick

/** Gives the focus back to where it was before a popup took it. */
QtObject {
    property Item previous
    property bool byKeyboard: false
    property var window: null

    function remember(item: Item) {
        window = item.Window.window;
        previous = window.activeFocusItem;
        byKeyboard = previous !== null && previous.visualFocus === true;
    }
    function giveBack() {
        // A press outside may have put it elsewhere by now.
        const now = window.activeFocusItem;
        if (previous && (now === null || now === window.contentItem))
            previous.forceActiveFocus(byKeyboard ? Qt.TabFocusReason : Qt.PopupFocusReason);
        previous = null;
    }
}
