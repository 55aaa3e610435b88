// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A capsule to press, or with `checkable` to choose; a chosen one shows a check mark. */
T.Button {
    id: chip

    property bool checkmark: checkable
    property string symbol

    readonly property color ink: checked ? TD.onBrand : TD.text
    readonly property string shownSymbol: checked && checkmark ? "checkmark" : symbol

    implicitWidth: row.implicitWidth + 24
    implicitHeight: 32
    font { family: TD.fontFamily; pixelSize: TD.body; weight: Font.Medium }
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    Accessible.role: checkable ? Accessible.CheckBox : Accessible.Button
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: checked
    // Return on a choice is for the form it stands in.
    Keys.onReturnPressed: event => activate(event)
    Keys.onEnterPressed: event => activate(event)
    function activate(event) {
        event.accepted = !checkable;
        if (!checkable)
            clicked();
    }
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: 6
            TDIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: chip.shownSymbol !== ""
                name: chip.shownSymbol
                color: chip.ink
                size: 14
            }
            Text {
                text: chip.text
                font: chip.font
                color: chip.ink
                textFormat: Text.PlainText
            }
        }
    }
    background: Rectangle {
        radius: height / 2
        color: chip.checked ? TD.brand : TD.card
        border { color: TD.hairline; width: chip.checked ? 0 : 1 }
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: chip.checked ? "black" : TD.text
            opacity: chip.down ? 0.12 : chip.hovered ? 0.06 : 0
        }
        TDFocusRing { target: chip; radius: parent.radius + 3 }
    }
}
