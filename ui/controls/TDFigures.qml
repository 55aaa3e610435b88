// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** A text whose digits are all as wide as a nought, so that numbers line up and do not jump. */
Row {
    id: figures

    property string text
    property color color: TD.text
    property font font: Qt.font({ family: TD.fontFamily, pixelSize: TD.body })

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    TextMetrics {
        id: nought
        font: figures.font
        text: "0"
    }
    Repeater {
        model: figures.text.length
        Text {
            required property int index
            readonly property string letter: figures.text.charAt(index)
            width: letter >= "0" && letter <= "9" ? nought.advanceWidth : implicitWidth
            horizontalAlignment: Text.AlignHCenter
            text: letter
            color: figures.color
            font: figures.font
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
