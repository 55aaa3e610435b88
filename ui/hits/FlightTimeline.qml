// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme

/** From departure to arrival: times and places at the ends, the flight between them. */
Item {
    id: timeline

    /** What TripCard holds; null for none. */
    required property var card
    readonly property real side: (width - 96) / 2

    implicitHeight: 46

    TDLabel {
        id: departTime
        width: Math.min(implicitWidth, timeline.side)
        text: timeline.card?.departTime ?? ""
        font { pixelSize: TD.figure; weight: Font.Bold }
        elide: Text.ElideRight
    }
    TDLabel {
        id: departPlace
        anchors.bottom: parent.bottom
        width: Math.min(implicitWidth, timeline.side)
        text: timeline.card?.departPlace ?? ""
        color: TD.textSecondary
        font.pixelSize: TD.caption
        elide: Text.ElideRight
    }
    TDLabel {
        id: later
        visible: text !== ""
        anchors { right: parent.right; top: arriveTime.top }
        text: timeline.card?.dayShift ?? ""
        color: TD.warn
        font { pixelSize: 10; bold: true }
    }
    TDLabel {
        id: arriveTime
        anchors { right: later.visible ? later.left : parent.right; rightMargin: later.visible ? 2 : 0 }
        width: Math.min(implicitWidth, timeline.side)
        text: timeline.card?.arriveTime ?? ""
        font { pixelSize: TD.figure; weight: Font.Bold }
        horizontalAlignment: Text.AlignRight
        elide: Text.ElideRight
    }
    TDLabel {
        id: arrivePlace
        anchors { right: parent.right; bottom: parent.bottom }
        width: Math.min(implicitWidth, timeline.side)
        text: timeline.card?.arrivePlace ?? ""
        color: TD.textSecondary
        font.pixelSize: TD.caption
        horizontalAlignment: Text.AlignRight
        elide: Text.ElideRight
    }

    Item {
        id: between
        readonly property real gap: TD.l
        readonly property real from: Math.max(departTime.width, departPlace.width) + gap
        readonly property real to: timeline.width - Math.max(timeline.width - arriveTime.x, arrivePlace.width) - gap
        x: from
        width: Math.max(0, to - from)
        height: parent.height

        Rectangle {
            y: plane.y + plane.height / 2
            width: plane.x - 4
            height: 1
            color: TD.hairline
        }
        Rectangle {
            x: plane.x + plane.width + 4
            y: plane.y + plane.height / 2
            width: plane.x - 4
            height: 1
            color: TD.hairline
        }
        TDIcon {
            id: plane
            x: (parent.width - width) / 2
            y: 4
            name: "airplane"
            size: 16
            color: TD.textTertiary
        }
        TDLabel {
            anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
            width: Math.min(implicitWidth, parent.width)
            text: timeline.card?.duration ?? ""
            color: TD.textSecondary
            font.pixelSize: TD.badge
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideRight
        }
    }
}
