// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** A section's heading; `small` is the spaced, quiet one over a panel. */
TDLabel {
    property bool small: false

    color: small ? TD.textSecondary : TD.text
    font { pixelSize: small ? TD.badge : TD.section; weight: small ? Font.Bold : Font.DemiBold; letterSpacing: small ? 0.8 : 0 }
    Accessible.role: Accessible.Heading
}
