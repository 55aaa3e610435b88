// SPDX-License-Identifier: MIT
import QtQuick

/** Gives the focus back to where it was when `popup` took it. */
QtObject {
    required property var popup
    property Item previous
    property bool byKeyboard: false

    function remember(window) {
        previous = window ? window.activeFocusItem : null;
        byKeyboard = previous !== null && previous.visualFocus === true;
    }
    function giveBack() {
        if (previous)
            previous.forceActiveFocus(byKeyboard ? Qt.TabFocusReason : Qt.PopupFocusReason);
        previous = null;
    }
}
