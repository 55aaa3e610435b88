// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** One choice of a few, as capsules. `picked` says what the user chose. */
Row {
    id: pills

    required property string label
    property var model: []
    property int currentIndex: 0
    signal picked(int index)

    spacing: TD.s
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    function choose(index: int) {
        const wrapped = (index + repeater.count) % repeater.count;
        repeater.itemAt(wrapped).forceActiveFocus(Qt.TabFocusReason);
        pick(wrapped);
    }
    function pick(index: int) {
        if (index !== currentIndex) {
            currentIndex = index;
            picked(index);
        }
    }

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
            Keys.onLeftPressed: pills.choose(index - 1)
            Keys.onRightPressed: pills.choose(index + 1)
        }
    }
}
