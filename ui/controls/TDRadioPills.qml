// SPDX-License-Identifier: MIT
import QtQuick
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
            TDChip {
                required property int index
                required property string modelData
                text: modelData
                checked: index === pills.currentIndex
                checkmark: false
                focusPolicy: checked ? Qt.StrongFocus : Qt.ClickFocus
                Accessible.role: Accessible.RadioButton
                Accessible.checkable: true
                onClicked: pills.pick(index)
            }
        }
    }
}
