// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** The capsule around a button. */
Rectangle {
    id: ground

    required property T.AbstractButton button

    radius: height / 2
    color: button.checked ? TD.brand : TD.card
    border { color: TD.hairline; width: button.checked ? 0 : 1 }
    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        color: ground.button.checked ? "black" : TD.text
        opacity: ground.button.down ? 0.12 : ground.button.hovered ? 0.06 : 0
    }
    TDFocusRing { target: ground.button; radius: parent.radius + 3 }
}
