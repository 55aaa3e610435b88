// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Theme

/** What failed at the last check; leads to the watchers. */
T.Button {
    id: strip

    implicitHeight: Math.max(44, row.implicitHeight + 2 * TD.m)
    leftPadding: TD.l
    rightPadding: TD.l
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Item {
        TDShadow { radius: TD.cardRadius }
        Rectangle {
            anchors.fill: parent
            radius: TD.cardRadius
            color: strip.hovered ? Qt.tint(TD.card, TD.tint(TD.danger, 0.05)) : TD.card
            border { width: 1; color: TD.hairline }
        }
        TDFocusRing { target: strip; radius: TD.cardRadius }
    }
    contentItem: RowLayout {
        id: row
        spacing: TD.m
        TDIcon { name: "exclamationmark.triangle.fill"; color: TD.danger; size: 18 }
        TDLabel {
            Layout.fillWidth: true
            text: strip.text
            wrapMode: Text.Wrap
            maximumLineCount: 4
            elide: Text.ElideRight
        }
        TDIcon { name: "chevron.right"; color: TD.textTertiary; size: 14 }
    }
}
