// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** The cabins to choose from. */
Flow {
    id: chips

    required property CabinChipsModel cabins

    spacing: TD.s
    Accessible.role: Accessible.Grouping
    Accessible.name: "Klasse"

    Repeater {
        model: chips.cabins
        TDChip {
            required property int index
            required property string label
            required property bool isChosen
            text: label
            checkable: true
            checked: isChosen
            onToggled: chips.cabins.toggle(index)
        }
    }
}
