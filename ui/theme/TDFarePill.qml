// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** A price or fare on a capsule. */
Item {
    id: pill

    property alias text: label.text

    implicitWidth: label.implicitWidth + 24
    implicitHeight: 28

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: TD.successBg
    }
    Text {
        id: label
        anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
        color: TD.success
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        font { family: TD.fontFamily; pixelSize: TD.body; weight: Font.DemiBold }
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
