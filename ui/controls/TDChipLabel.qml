// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** What stands in a capsule: an optional symbol, and the text of its button. */
Item {
    id: label

    required property T.AbstractButton button
    property string symbol

    readonly property color ink: button.checked ? TD.onBrand : TD.text

    implicitWidth: row.implicitWidth
    Row {
        id: row
        anchors.centerIn: parent
        spacing: 6
        TDIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: label.symbol !== ""
            name: label.symbol
            color: label.ink
            size: 14
        }
        Text {
            text: label.button.text
            font: label.button.font
            color: label.ink
            textFormat: Text.PlainText
        }
    }
}
