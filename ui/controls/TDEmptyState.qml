// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** What an empty page says. */
Column {
    id: empty

    property string symbol
    property alias text: label.text

    spacing: TD.m
    topPadding: 48
    bottomPadding: 48
    TDIcon {
        anchors.horizontalCenter: parent.horizontalCenter
        name: empty.symbol
        size: 26
        color: TD.textTertiary
    }
    TDLabel {
        id: label
        width: Math.min(implicitWidth, 520, empty.width)
        anchors.horizontalCenter: parent.horizontalCenter
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: TD.textSecondary
    }
}
