// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** One choice of a few, side by side in one frame. */
TDChoice {
    id: segmented

    readonly property real natural: {
        let sum = 2;
        for (let i = 0; i < repeater.count; ++i)
            sum += repeater.itemAt(i)?.natural ?? 0;
        return sum;
    }

    implicitWidth: natural
    implicitHeight: TD.controlHeight
    parts: repeater

    Rectangle {
        anchors.fill: parent
        radius: TD.controlRadius
        color: TD.field
        border { color: TD.hairline; width: 1 }
    }
    Row {
        id: row
        anchors { fill: parent; margins: 1 }
        Repeater {
            id: repeater
            model: segmented.model
            T.RadioButton {
                id: part
                required property int index
                required property string modelData
                readonly property real natural: Math.ceil(measure.implicitWidth) + 28
                // What is left over is shared out evenly.
                width: natural + (segmented.width - segmented.natural) / repeater.count
                height: row.height
                text: modelData
                checked: index === segmented.currentIndex
                hoverEnabled: true
                // Where nothing is chosen yet, the keyboard begins at the first; Qt minds when the
                // part that has the focus may no longer have it.
                focusPolicy: checked || activeFocus || (index === 0 && segmented.currentIndex < 0) ? Qt.StrongFocus : Qt.ClickFocus
                font { family: TD.fontFamily; pixelSize: TD.body; weight: checked ? Font.DemiBold : Font.Medium }
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: checked
                onClicked: segmented.pick(index)
                HoverHandler { cursorShape: Qt.PointingHandCursor }
                // The bold width, so that nothing moves when another part is chosen.
                Text {
                    id: measure
                    visible: false
                    text: part.modelData
                    font { family: TD.fontFamily; pixelSize: TD.body; weight: Font.DemiBold }
                }
                contentItem: Text {
                    text: part.text
                    font: part.font
                    color: TD.text
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }
                background: Rectangle {
                    radius: TD.controlRadius - 1
                    color: part.checked ? TD.card : part.hovered ? TD.tint(TD.text, 0.05) : "transparent"
                    border { color: TD.hairline; width: part.checked ? 1 : 0 }
                    TDFocusRing { target: part; anchors.margins: -1 }
                }
            }
        }
    }
}
