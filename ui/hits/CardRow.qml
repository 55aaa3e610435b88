// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** Trip cards side by side. */
Item {
    id: row

    required property var cards
    required property var ages
    required property bool isLast
    required property int columns
    property real inset: 0
    property bool isCurrent: false
    property bool isTabStop: false
    signal booked(int column)
    signal copied(int column)

    implicitHeight: line.height + (isLast ? TD.l + TD.m : TD.m)

    Accessible.role: Accessible.ListItem
    Accessible.name: cards.map(card => card.title).join(", ")

    /** Puts the focus on the first button. */
    function enter() {
        for (let i = 0; i < cards.length; ++i) {
            if (repeater.itemAt(i).enter())
                return;
        }
    }

    JourneyGround {
        x: row.inset
        width: row.width - 2 * row.inset
        height: parent.height - (row.isLast ? TD.m : 0)
        isBottom: row.isLast

        Item {
            id: line
            x: TD.l
            width: parent.width - 2 * TD.l
            height: row.cards.some(card => !card.soldOut) ? 184 : 106
            Repeater {
                id: repeater
                model: row.columns
                TripCard {
                    required property int index
                    readonly property real share: (line.width - (row.columns - 1) * TD.m) / row.columns
                    x: index * (share + TD.m)
                    width: share
                    height: line.height
                    visible: index < row.cards.length
                    card: row.cards[index] ?? null
                    age: row.ages[index] ?? null
                    isTabStop: row.isTabStop
                    onBooked: row.booked(index)
                    onCopied: row.copied(index)
                }
            }
        }
    }
    Rectangle {
        visible: row.isCurrent
        x: row.inset + TD.l - 5
        y: -5
        width: row.width - 2 * x
        height: line.height + 10
        color: "transparent"
        radius: TD.cardRadius + 5
        border { color: TD.accent; width: 2 }
    }
}
