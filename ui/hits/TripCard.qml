// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Theme

/** One offer: its flight, its price and the way to book it, or that it has sold out. */
Rectangle {
    id: trip

    /** What TripCard and TripAge hold; null for none. */
    required property var card
    required property var age
    property bool isTabStop: false
    signal booked
    signal copied

    readonly property bool soldOut: card?.soldOut ?? false
    readonly property bool isBookable: card?.isBookable ?? false

    /** Puts the focus on the first button; false where there is none. */
    function enter(): bool {
        if (soldOut)
            return false;
        (isBookable ? fareRow : copyButton).forceActiveFocus(Qt.TabFocusReason);
        return true;
    }

    radius: TD.cardRadius
    color: TD.card
    border {
        width: 1
        color: {
            switch (trip.age?.border) {
            case 1: return TD.tint(TD.success, 0.45);
            case 2: return TD.tint(TD.danger, 0.35);
            default: return TD.hairline;
            }
        }
    }
    Accessible.role: Accessible.Grouping
    Accessible.name: card ? [card.title, card.badge, card.departPlace, card.departTime, soldOut ? card.goneText : card.fare].filter(text => text !== "").join(", ") : ""

    TDLabel {
        id: title
        anchors { left: parent.left; leftMargin: TD.l }
        y: TD.l - 2
        height: 24
        width: Math.min(implicitWidth, badge.visible ? parent.width - 2 * TD.l - badge.width - TD.s - Math.min(flight.implicitWidth + TD.s, 120)
                                                     : parent.width - 2 * TD.l - Math.min(flight.implicitWidth + TD.s, 120))
        text: trip.card?.title ?? ""
        color: trip.soldOut ? TD.textSecondary : TD.text
        font { pixelSize: trip.soldOut ? 14 : TD.cardTitle; weight: trip.soldOut ? Font.DemiBold : Font.Bold }
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        maximumLineCount: 1
    }
    TDBadge {
        id: badge
        visible: text !== ""
        x: trip.soldOut ? parent.width - width - TD.l : title.x + title.width + TD.s
        anchors.verticalCenter: title.verticalCenter
        text: trip.card?.badge ?? ""
        color: trip.soldOut ? TD.danger : trip.card?.isHomebound ? TD.warn : TD.accent
    }
    FlightNumbers {
        id: flight
        anchors { right: parent.right; rightMargin: TD.l; verticalCenter: title.verticalCenter }
        width: Math.min(implicitWidth, parent.width - 2 * TD.l - title.width - (badge.visible ? badge.width + TD.s : 0) - TD.s)
        text: trip.card?.flight ?? ""
    }

    TDLabel {
        visible: trip.soldOut
        anchors { left: parent.left; right: parent.right; margins: TD.l }
        y: 46
        text: trip.card?.goneText ?? ""
        color: TD.textSecondary
        font { pixelSize: TD.body; weight: Font.Medium; strikeout: true }
        elide: Text.ElideRight
    }

    FlightTimeline {
        visible: !trip.soldOut
        anchors { left: parent.left; right: parent.right; leftMargin: TD.l; rightMargin: TD.l }
        y: 50
        card: trip.card
    }
    T.AbstractButton {
        id: fareRow
        objectName: "book"
        visible: !trip.soldOut
        enabled: trip.isBookable
        anchors { left: parent.left; right: parent.right; leftMargin: TD.l - inset; rightMargin: TD.l - inset }
        y: 108
        height: 32

        /** The focus ring keeps clear of what is in it. */
        readonly property real inset: 6
        focusPolicy: Qt.StrongFocus
        activeFocusOnTab: trip.isTabStop && trip.isBookable
        hoverEnabled: true
        Accessible.name: fare.text + ", Book på SAS"
        Keys.onReturnPressed: trip.booked()
        Keys.onEnterPressed: trip.booked()
        onClicked: trip.booked()
        HoverHandler { cursorShape: trip.isBookable ? Qt.PointingHandCursor : Qt.ArrowCursor }

        TDFarePill {
            id: fare
            visible: text !== ""
            x: fareRow.inset
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, link.x - x - TD.s)
            text: trip.card?.fare ?? ""
        }
        TDLabel {
            id: link
            anchors { right: parent.right; rightMargin: fareRow.inset; verticalCenter: parent.verticalCenter }
            text: "Book på SAS →"
            color: trip.isBookable ? TD.accent : TD.textTertiary
            font { weight: Font.DemiBold; underline: fareRow.hovered && trip.isBookable }
        }
        TDFocusRing { target: fareRow }
    }
    Rectangle {
        id: dot
        x: TD.l
        anchors.verticalCenter: found.verticalCenter
        width: 6
        height: 6
        radius: 3
        color: {
            switch (trip.age?.freshness) {
            case 0: return TD.success;
            case 1: return TD.warn;
            default: return TD.tint(TD.textSecondary, 0.5);
            }
        }
    }
    TDLabel {
        id: found
        anchors { left: dot.right; leftMargin: 6; bottom: parent.bottom; bottomMargin: TD.l - 2 }
        text: trip.age?.found ?? ""
        color: TD.textTertiary
        font.pixelSize: TD.badge
    }
    TDIconButton {
        id: copyButton
        objectName: "copy"
        visible: !trip.soldOut
        anchors { right: parent.right; rightMargin: TD.s + 2; verticalCenter: found.verticalCenter }
        symbol: "doc.on.doc"
        label: "Kopier treffet"
        size: 28
        activeFocusOnTab: trip.isTabStop
        onClicked: trip.copied()
    }
}
