// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Theme

T.MenuItem {
    id: item

    property string symbol
    property color ink: TD.text

    implicitHeight: 34
    leftPadding: TD.s
    rightPadding: TD.s
    hoverEnabled: true

    contentItem: Row {
        spacing: TD.s + 2
        TDIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: item.symbol
            color: item.ink
            size: 18
        }
        TDLabel {
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            color: item.ink
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: TD.controlRadius - 2
        color: item.highlighted ? TD.tint(TD.accent, 0.14) : "transparent"
    }
}
