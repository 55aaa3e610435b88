// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** An on/off switch; `label` is its accessible name, its text stands elsewhere. */
T.Switch {
    id: control

    required property string label

    implicitWidth: 40
    implicitHeight: TD.target
    padding: 2
    opacity: enabled ? 1 : 0.5
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.name: label
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    indicator: Rectangle {
        x: 2
        y: (control.height - height) / 2
        width: 36
        height: 20
        radius: 10
        color: control.checked ? TD.success : TD.tint(TD.textTertiary, 0.45)
        Rectangle {
            x: 2 + control.visualPosition * 16
            y: 2
            width: 16
            height: 16
            radius: 8
            color: "white"
            Behavior on x {
                enabled: !control.pressed && !TD.reduceMotion
                NumberAnimation { duration: TD.quick; easing.type: Easing.OutCubic }
            }
        }
        TDFocusRing { target: control; radius: 13 }
    }
}
