// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** A soft shadow behind its parent, of rounded rectangles: every backend can draw those. */
Item {
    id: shadow

    property real radius: TD.cardRadius
    /** How far the shadow reaches, in pixels. */
    property int depth: 3

    anchors.fill: parent
    z: -1

    Repeater {
        model: shadow.depth
        Rectangle {
            required property int index
            x: -index
            y: 1 + index * 0.5
            width: shadow.width + 2 * index
            height: shadow.height + index
            radius: shadow.radius + index
            color: TD.dark ? "#1a000000" : "#07382c14"
        }
    }
}
