// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Theme

/** One page's entry in the sidebar. */
T.TabButton {
    id: entry

    property string symbol
    property string badge
    property bool current: false

    implicitHeight: 36
    leftPadding: TD.m
    rightPadding: TD.m
    Accessible.role: Accessible.PageTab
    Accessible.name: badge === "" ? text : text + ", " + badge
    Accessible.selected: current
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: TD.controlRadius
            color: entry.current ? TD.tint(TD.accent, 0.14) : entry.hovered ? TD.tint(TD.text, 0.05) : "transparent"
        }
        TDFocusRing { target: entry }
    }
    contentItem: RowLayout {
        spacing: TD.m
        TDIcon {
            name: entry.symbol
            size: 18
            color: entry.current ? TD.badgeText(TD.accent, false) : TD.text
        }
        TDLabel {
            Layout.fillWidth: true
            text: entry.text
            elide: Text.ElideRight
            color: entry.current ? TD.badgeText(TD.accent, false) : TD.text
            font.weight: entry.current ? Font.DemiBold : Font.Normal
        }
        TDBadge {
            visible: entry.badge !== ""
            text: entry.badge
            color: TD.accent
        }
    }
}
