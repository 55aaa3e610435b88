// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** A short word on a capsule of its colour. */
Item {
    id: badge

    property alias text: label.text
    property color color: TD.accent
    property bool filled: false

    implicitWidth: label.implicitWidth + 16
    implicitHeight: 18

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: badge.filled ? badge.color : TD.tint(badge.color, 0.14)
    }
    Text {
        id: label
        anchors.centerIn: parent
        color: TD.badgeText(badge.color, badge.filled)
        font { family: TD.fontFamily; pixelSize: TD.badge; bold: true }
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
