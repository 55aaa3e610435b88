// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** The ring round `target` while the keyboard has put the focus there. */
Rectangle {
    /** A control, or anything with `visualFocus`. */
    required property var target

    anchors { fill: parent; margins: -3 }
    visible: target.visualFocus
    color: "transparent"
    radius: TD.controlRadius + 3
    border { color: TD.accent; width: 2 }
    z: 1
}
