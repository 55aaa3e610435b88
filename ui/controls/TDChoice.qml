// SPDX-License-Identifier: MIT
import QtQuick

/** What the choices of one among a few have in common; `parts` are their buttons. */
Item {
    id: choice

    /** The accessible name. */
    required property string label
    property var model: []
    property int currentIndex: 0
    property Repeater parts
    /** The user has chosen. The owner may take it up at once; otherwise the choice keeps it. */
    signal picked(int index)

    Accessible.role: Accessible.Grouping
    Accessible.name: label

    function pick(index: int) {
        if (index === currentIndex)
            return;
        picked(index);
        // Writing it here would cut a binding that has just brought it.
        if (currentIndex !== index)
            currentIndex = index;
    }
    function step(by: int) {
        const next = (currentIndex + by + parts.count) % parts.count;
        parts.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
        pick(next);
    }
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)
}
