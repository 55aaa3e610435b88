// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A button that is only a symbol; `label` is its accessible name and its tool tip. */
T.Button {
    id: button

    property string symbol
    required property string label
    property color color: TD.textSecondary
    property int size: 30
    property bool bordered: false
    property alias iconRotation: icon.rotation

    implicitWidth: Math.max(TD.target, size)
    implicitHeight: implicitWidth
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: label
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    contentItem: Item {
        TDIcon {
            id: icon
            anchors.centerIn: parent
            name: button.symbol
            color: button.color
        }
    }
    background: Rectangle {
        radius: button.bordered ? height / 2 : TD.controlRadius
        color: button.down ? TD.tint(TD.text, 0.12) : button.hovered ? TD.tint(TD.text, 0.06) : "transparent"
        border { color: TD.hairline; width: button.bordered ? 1 : 0 }
        TDFocusRing { target: button; radius: parent.radius + 3 }
    }
    // Made when it is wanted: a page has many buttons, and a tool tip is heavier than all of one.
    Loader {
        active: button.hovered || button.visualFocus
        sourceComponent: TDToolTip {
            parent: button
            text: button.label
            shown: true
        }
    }
}
