// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** A dot that says how something is; with `pulsing`, that it goes on. */
Rectangle {
    id: dot

    property int size: 8
    property bool pulsing: false

    implicitWidth: size
    implicitHeight: size
    radius: size / 2
    color: TD.success

    SequentialAnimation on opacity {
        running: dot.pulsing && dot.visible && !TD.reduceMotion
        loops: Animation.Infinite
        NumberAnimation { to: 0.3; duration: 700 }
        NumberAnimation { to: 1; duration: 700 }
        onStopped: dot.opacity = 1
    }
}
