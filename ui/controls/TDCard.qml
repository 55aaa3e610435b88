// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** A rounded panel. Children lie in it with `padding` round them; its height follows theirs. */
Item {
    id: card

    default property alias content: body.data
    property int padding: TD.l
    property real radius: TD.cardRadius
    property color color: TD.card
    property color borderColor: TD.hairline
    property bool shadowed: true

    implicitWidth: body.childrenRect.width + 2 * padding
    implicitHeight: body.childrenRect.height + 2 * padding

    TDShadow { radius: card.radius; visible: card.shadowed }
    Rectangle {
        anchors.fill: parent
        radius: card.radius
        color: card.color
        border { color: card.borderColor; width: 1 }
    }
    Item {
        id: body
        anchors { fill: parent; margins: card.padding }
    }
}
