// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** Turns the journey round, and its symbol with it. */
TDIconButton {
    required property BoardingPassSearchCardModel form

    label: "Bytt avreise og reisemål"
    symbol: "arrow.left.arrow.right"
    size: 34
    bordered: true
    color: TD.accent
    iconRotation: form.swapSpin ? 180 : 0
    onClicked: form.swap()
    Behavior on iconRotation {
        enabled: !TD.reduceMotion
        // A spring of 0.4 s that does not swing.
        SpringAnimation { spring: 3.95; damping: 0.5; epsilon: 0.5 }
    }
}
