// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** One choice of a few, as capsules. */
TDChoice {
    id: pills

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    parts: repeater

    Row {
        id: row
        spacing: TD.s
        Repeater {
            id: repeater
            model: pills.model
            T.RadioButton {
                id: pill
                required property int index
                required property string modelData
                implicitWidth: contentItem.implicitWidth + 24
                implicitHeight: 32
                text: modelData
                checked: index === pills.currentIndex
                hoverEnabled: true
                focusPolicy: checked ? Qt.StrongFocus : Qt.ClickFocus
                font { family: TD.fontFamily; pixelSize: TD.body; weight: Font.Medium }
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: checked
                onClicked: pills.pick(index)
                HoverHandler { cursorShape: Qt.PointingHandCursor }
                contentItem: TDChipLabel { button: pill }
                background: TDChipGround { button: pill }
            }
        }
    }
}
