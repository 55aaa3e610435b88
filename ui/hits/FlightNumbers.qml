// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme

/** Flight numbers with digits of one width, cut where there are too many of them. */
Item {
    id: numbers

    property string text
    /** Two of them fit into what a card keeps for them. */
    readonly property bool isShort: text.length <= 14

    implicitWidth: isShort ? figures.width : cut.implicitWidth
    implicitHeight: cut.implicitHeight

    TDFigures {
        id: figures
        anchors.right: parent.right
        visible: numbers.isShort
        text: numbers.isShort ? numbers.text : ""
        color: TD.textSecondary
        font: cut.font
    }
    TDLabel {
        id: cut
        anchors.fill: parent
        visible: !numbers.isShort
        text: numbers.isShort ? "" : numbers.text
        color: TD.textSecondary
        font.pixelSize: TD.caption
        horizontalAlignment: Text.AlignRight
        elide: Text.ElideRight
    }
}
