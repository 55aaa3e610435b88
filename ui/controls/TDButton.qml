// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A button. `kind` is "cta", "filled", "bordered", "plain" or "destructive". */
T.Button {
    id: button

    property string kind: "bordered"
    property string symbol
    /** The symbol after the text instead of before it. */
    property bool symbolLast: false
    property bool large: false

    property color ink: {
        switch (kind) {
        case "cta": return TD.ctaInk;
        case "filled": return TD.onBrand;
        case "plain": return TD.accent;
        case "destructive": return TD.danger;
        default: return TD.text;
        }
    }

    implicitWidth: Math.max(TD.target, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: large ? 46 : TD.controlHeight
    leftPadding: kind === "plain" ? 4 : large ? 26 : 14
    rightPadding: leftPadding
    font { family: TD.fontFamily; pixelSize: large ? 15 : TD.body; weight: Font.DemiBold }
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    contentItem: Item {
        implicitWidth: Math.ceil(label.implicitWidth) + label.beside
        implicitHeight: row.implicitHeight
        Row {
            id: row
            anchors.centerIn: parent
            spacing: TD.s
            layoutDirection: button.symbolLast ? Qt.RightToLeft : Qt.LeftToRight
            TDIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol !== ""
                name: button.symbol
                color: button.ink
                size: button.large ? 20 : 16
            }
            Text {
                id: label
                readonly property int beside: button.symbol === "" ? 0 : row.spacing + (button.large ? 20 : 16)
                anchors.verticalCenter: parent.verticalCenter
                visible: button.text !== ""
                width: Math.min(Math.ceil(implicitWidth), Math.max(0, button.availableWidth - beside))
                text: button.text
                font: button.font
                color: button.ink
                elide: Text.ElideRight
                textFormat: Text.PlainText
            }
        }
    }
    background: Rectangle {
        readonly property bool solid: button.kind === "cta" || button.kind === "filled"
        radius: button.large ? TD.cardRadius : TD.controlRadius
        color: {
            if (button.kind === "cta")
                return TD.peach;
            if (button.kind === "filled")
                return TD.brand;
            if (button.kind === "plain")
                return "transparent";
            return TD.card;
        }
        border { color: TD.hairline; width: solid || button.kind === "plain" ? 0 : 1 }
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: parent.solid ? "black" : TD.text
            opacity: button.down ? 0.12 : button.hovered ? 0.06 : 0
            Behavior on opacity { NumberAnimation { duration: TD.quick } }
        }
        TDFocusRing { target: button; radius: parent.radius + 3 }
    }
}
