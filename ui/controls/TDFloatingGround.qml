// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** The ground of what floats over a page. */
Rectangle {
    color: TD.card
    radius: TD.cardRadius - 2
    border { color: TD.hairline; width: 1 }
    TDShadow { radius: parent.radius; depth: 8 }
}
