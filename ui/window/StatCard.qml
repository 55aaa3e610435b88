// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Theme

/** A figure that leads to the page behind it. */
T.Button {
    id: card

    property string symbol
    property string title
    property string value
    property string sub
    property bool accented: false

    readonly property color tone: accented ? TD.success : TD.accent

    implicitHeight: column.implicitHeight + 2 * TD.l
    leftPadding: TD.l
    rightPadding: TD.l
    topPadding: TD.l
    bottomPadding: TD.l
    Accessible.name: title + ": " + value + " " + sub
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Item {
        TDShadow { radius: TD.cardRadius }
        Rectangle {
            anchors.fill: parent
            radius: TD.cardRadius
            color: card.hovered || card.down ? Qt.tint(TD.card, TD.tint(card.tone, 0.06)) : TD.card
            border {
                width: 1
                color: card.accented ? TD.tint(TD.success, 0.6) : card.hovered ? TD.tint(TD.accent, 0.5) : TD.hairline
            }
        }
        TDFocusRing { target: card; radius: TD.cardRadius }
    }
    contentItem: ColumnLayout {
        id: column
        spacing: 2
        RowLayout {
            spacing: TD.s
            TDIcon { name: card.symbol; color: card.tone; size: 18 }
            TDLabel {
                Layout.fillWidth: true
                text: card.title
                color: card.accented ? TD.success : TD.textSecondary
                font.weight: Font.DemiBold
                elide: Text.ElideRight
            }
            TDIcon { name: "chevron.right"; color: TD.textTertiary; size: 14 }
        }
        TDFigures {
            Layout.topMargin: TD.xs
            text: card.value
            color: card.accented ? TD.success : TD.text
            font { pixelSize: TD.figure + 6; bold: true }
        }
        TDLabel {
            Layout.fillWidth: true
            text: card.sub
            color: card.accented ? TD.success : TD.textSecondary
            elide: Text.ElideRight
        }
    }
}
