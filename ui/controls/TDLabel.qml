// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** Plain text in the body size; say `font.pixelSize` and `color` for the others. */
Text {
    color: TD.text
    font { family: TD.fontFamily; pixelSize: TD.body }
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
