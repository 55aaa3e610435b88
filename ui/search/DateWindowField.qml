// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** A window of dates as a stub of the pass; pressed, it shows its picker. */
T.Button {
    id: button

    required property DateWindowFieldModel field

    implicitWidth: content.implicitWidth + leftPadding + rightPadding
    implicitHeight: 56
    leftPadding: TD.m + 1
    rightPadding: TD.m
    hoverEnabled: true
    onClicked: field.open = !field.open
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Accessible.name: field.title + " " + field.text
    Accessible.role: Accessible.ButtonDropDown
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    contentItem: Item {
        Column {
            id: content
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            spacing: 3
            TDLabel {
                text: button.field.title
                color: TD.textSecondary
                font { pixelSize: TD.badge; bold: true; letterSpacing: 0.6 }
                Accessible.ignored: true
            }
            Row {
                spacing: TD.s
                TDIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "calendar"
                    color: TD.accent
                    size: 16
                }
                TDLabel {
                    text: button.field.text
                    font.weight: Font.DemiBold
                    Accessible.ignored: true
                }
            }
        }
    }
    background: Rectangle {
        radius: TD.controlRadius
        color: TD.field
        border { color: button.field.open ? TD.accent : TD.hairline; width: button.field.open ? 2 : 1 }
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: TD.text
            opacity: button.down ? 0.08 : button.hovered ? 0.04 : 0
        }
        TDFocusRing { target: button; radius: parent.radius + 3 }
    }
    DateWindowPicker { field: button.field }
}
