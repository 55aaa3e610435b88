// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** The slice of a journey's panel that lies behind one row of the list. */
Item {
    id: ground

    property bool isTop: false
    property bool isBottom: false

    clip: true
    Rectangle {
        x: 0
        y: ground.isTop ? 0 : -radius
        width: ground.width
        height: ground.height - y + (ground.isBottom ? 0 : radius)
        radius: TD.cardRadius
        color: TD.card
        border { color: TD.hairline; width: 1 }
    }
}
