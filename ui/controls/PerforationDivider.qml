// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Shapes
import Tindra.Theme

/** The dashed line of a ticket with a notch at either end; as wide as the card it divides. */
Item {
    id: divider

    /** What shows through the notches. */
    property color ground: TD.window
    property int notch: 11

    implicitHeight: 2 * notch + 2

    Shape {
        anchors.fill: parent
        ShapePath {
            strokeColor: TD.hairline
            strokeWidth: 2
            strokeStyle: ShapePath.DashLine
            dashPattern: [3, 2]
            fillColor: "transparent"
            startX: divider.notch + 8
            startY: divider.height / 2
            PathLine { x: divider.width - divider.notch - 8; y: divider.height / 2 }
        }
    }
    component Notch: Item {
        property bool leading: true
        width: divider.notch + 1
        height: divider.height
        clip: true
        Rectangle {
            x: parent.leading ? -width / 2 : parent.width - width / 2
            anchors.verticalCenter: parent.verticalCenter
            width: 2 * divider.notch
            height: width
            radius: width / 2
            color: divider.ground
            border { color: TD.hairline; width: 1 }
        }
    }
    Notch { anchors.left: parent.left }
    Notch { anchors.right: parent.right; leading: false }
}
