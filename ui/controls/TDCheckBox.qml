// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A check box with its text. */
T.CheckBox {
    id: control

    /** What the tool tip says; empty for none. */
    property string tip

    implicitWidth: contentItem.implicitWidth + leftPadding
    implicitHeight: Math.max(TD.target, contentItem.implicitHeight)
    leftPadding: 24
    font { family: TD.fontFamily; pixelSize: TD.body }
    opacity: enabled ? 1 : 0.5
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    hoverEnabled: true
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.name: text
    Accessible.description: tip
    TDToolTip { text: control.tip; shown: control.hovered || control.visualFocus }

    indicator: Rectangle {
        y: (control.height - height) / 2
        width: 16
        height: 16
        radius: 4
        color: control.checked ? TD.accent : TD.field
        border { color: TD.textTertiary; width: control.checked ? 0 : 1 }
        TDIcon {
            anchors.centerIn: parent
            visible: control.checked
            name: "checkmark"
            size: 12
            color: TD.onAccent
        }
        TDFocusRing { target: control; radius: 7 }
    }
    contentItem: Text {
        text: control.text
        font: control.font
        color: TD.text
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }
}
