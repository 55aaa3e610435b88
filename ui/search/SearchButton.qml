// SPDX-License-Identifier: MIT
import Tindra.Controls

/** The button that makes a watcher of the form. */
TDButton {
    kind: "cta"
    large: true
    text: "Søk"
    symbol: "arrow.right"
    symbolLast: true
}
