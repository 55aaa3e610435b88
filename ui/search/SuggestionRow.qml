// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme

/** One suggested airport: its code and its city. */
Rectangle {
    id: row

    required property string code
    required property string city
    property bool highlighted: false
    readonly property alias hovering: hover.hovered
    signal pick(string code)

    implicitHeight: 33
    radius: TD.controlRadius - 2
    color: highlighted ? TD.tint(TD.accent, 0.14) : "transparent"
    Accessible.role: Accessible.ListItem
    Accessible.name: code + " " + city
    Accessible.selected: highlighted
    Accessible.onPressAction: pick(code)

    TDLabel {
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        text: row.code
        color: row.highlighted ? TD.badgeText(TD.accent, false) : TD.text
        font { bold: true; letterSpacing: 0.4 }
        Accessible.ignored: true
    }
    TDLabel {
        x: 58
        width: parent.width - x - 10
        anchors.verticalCenter: parent.verticalCenter
        text: row.city
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    TapHandler { onTapped: row.pick(row.code) }
}
