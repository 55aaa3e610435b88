// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** The ring round `target` while the keyboard has put the focus there. */
Rectangle {
    required property Item target

    anchors { fill: parent; margins: -3 }
    visible: target.visualFocus === true
    color: "transparent"
    radius: TD.controlRadius + 3
    border { color: TD.accent; width: 2 }
    z: 1
}
