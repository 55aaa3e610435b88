// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** The search form as a boarding pass: the journey above the perforation, the choices below. */
TDCard {
    id: card

    required property BoardingPassSearchCardModel form
    /** What the card lies on; it shows through the notches. */
    property alias ground: perforation.ground
    /** `item` has moved and should be scrolled to. */
    signal reveal(Item item)

    readonly property bool wide: width >= 780

    padding: 0
    radius: TD.passRadius
    implicitWidth: 848
    Accessible.role: Accessible.Form
    Accessible.name: heading.text

    Column {
        width: card.width
        topPadding: TD.xl
        bottomPadding: TD.xl

        Item {
            x: TD.xl
            width: parent.width - 2 * TD.xl
            height: pills.y + pills.height

            Column {
                id: headings
                width: parent.width - (card.wide ? presets.width + TD.xl : 0)
                spacing: TD.xs
                TDLabel {
                    id: heading
                    width: parent.width
                    text: "Hvor vil du reise?"
                    wrapMode: Text.Wrap
                    font { pixelSize: TD.figure; bold: true }
                    Accessible.role: Accessible.Heading
                }
                TDLabel {
                    width: parent.width
                    text: "Søk én gang — Tindra overvåker og sier fra når saver-plasser dukker opp."
                    color: TD.textSecondary
                    wrapMode: Text.Wrap
                }
            }
            Row {
                id: presets
                x: parent.width - width
                y: card.wide ? (headings.height - height) / 2 : pills.y
                spacing: card.wide ? TD.m : TD.s
                Repeater {
                    model: card.form.presetLabels
                    TDChip {
                        required property int index
                        required property string modelData
                        text: modelData
                        onClicked: card.form.usePreset(index)
                    }
                }
            }
            TDRadioPills {
                id: pills
                y: headings.height + TD.l
                label: "Reisetype"
                model: ["⇄ Tur/retur", "→ Én vei"]
                currentIndex: card.form.roundTrip ? 0 : 1
                onPicked: index => card.form.roundTrip = index === 0
            }
        }
        Item { width: 1; height: TD.l }
        RowLayout {
            x: TD.xl
            width: parent.width - 2 * TD.xl
            spacing: TD.l
            Keys.onReturnPressed: card.moveOn()
            Keys.onEnterPressed: card.moveOn()

            AirportField {
                id: origin
                objectName: "origin"
                field: card.form.origin
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.alignment: Qt.AlignTop
            }
            SwapButton {
                form: card.form
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: 17
            }
            AirportField {
                id: destination
                objectName: "destination"
                field: card.form.destination
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.alignment: Qt.AlignTop
            }
        }
        Item { width: 1; height: TD.s }
        PerforationDivider {
            id: perforation
            width: parent.width
        }
        Item { width: 1; height: TD.s }
        Item {
            id: choices
            x: TD.xl
            width: parent.width - 2 * TD.xl
            height: searchArea.y + searchArea.height

            readonly property real dateWidth: card.wide ? Math.max(218, outbound.implicitWidth, homebound.implicitWidth)
                                                        : (width - TD.l) / 2
            readonly property real warningSpace: warning.height > 0 ? warning.height + TD.l : 0

            DateWindowField {
                id: outbound
                objectName: "outbound"
                field: card.form.outbound
                width: choices.dateWidth
            }
            DateWindowField {
                id: homebound
                objectName: "homebound"
                field: card.form.homebound
                x: choices.dateWidth + TD.l
                width: choices.dateWidth
                visible: opacity > 0
                opacity: card.form.roundTrip ? 1 : 0
                Behavior on opacity { NumberAnimation { duration: TD.slow } }
            }
            ClassChips {
                id: chips
                cabins: card.form.cabins
                y: outbound.height + TD.l + (card.wide ? choices.warningSpace + (search.height - 32) / 2 : (more.height - 32) / 2)
                width: choices.width - TD.l - (card.wide ? search.width : more.width)
            }
            MoreOptionsButton {
                id: more
                objectName: "more"
                form: card.form
                x: choices.width - width
                y: card.wide ? (outbound.height - height) / 2 : outbound.height + TD.l
            }
            WindowWarning {
                id: warning
                objectName: "warning"
                form: card.form
                y: outbound.height + TD.l + (card.wide ? 0 : more.height + TD.l)
                width: choices.width
                height: card.form.windowWarning ? implicitHeight : 0
                visible: height > 0
                clip: true
                onDone: card.startAgain()
                onHeightChanged: settling.restart()
                Behavior on height {
                    enabled: !TD.reduceMotion
                    // A spring of 0.5 s that swings a little.
                    SpringAnimation { spring: 2.53; damping: 0.34; epsilon: 0.5 }
                }
            }
            Column {
                id: searchArea
                x: choices.width - width
                y: outbound.height + TD.l + choices.warningSpace + (card.wide ? 0 : more.height + TD.l)
                spacing: TD.s
                SearchButton {
                    id: search
                    objectName: "search"
                    anchors.right: parent.right
                    enabled: card.form.canSearch
                    onClicked: {
                        card.form.submit();
                        if (!enabled)
                            card.startAgain();
                    }
                }
                TDLabel {
                    anchors.right: parent.right
                    text: card.form.caption
                    color: TD.textTertiary
                    font.pixelSize: TD.caption
                }
            }
        }
    }

    // Once the warning has come or gone and everything round it has found its place.
    Timer {
        id: settling
        interval: 30
        onTriggered: if (card.form.windowWarning) card.reveal(searchArea)
    }

    /** Return: on to the next field. */
    function moveOn() {
        if (destination.activeFocus)
            outbound.forceActiveFocus(Qt.TabFocusReason);
        else
            destination.forceActiveFocus(Qt.TabFocusReason);
    }
    /** The pressed button is gone or dead after a search; the next one begins with its destination. */
    function startAgain() {
        destination.forceActiveFocus(Qt.OtherFocusReason);
    }
}
