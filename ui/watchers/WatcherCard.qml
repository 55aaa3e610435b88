// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme

/** One watcher. Its menu opens with the right button, the context-menu key and Shift+F10. */
TDCard {
    id: card

    required property double watcherId
    required property string name
    required property string title
    required property string quotedTitle
    required property string source
    required property string route
    required property string outbound
    required property string homebound
    required property string cabins
    required property string status
    required property string hitsText
    required property bool hasHits
    required property bool watching
    required property bool past

    signal toggleAsked
    signal watchingAsked(bool on)
    signal editAsked
    signal moveAsked
    signal renameAsked
    signal deleteAsked

    readonly property string toggleText: watching ? "Pause" : "Start"
    readonly property string toggleSymbol: watching ? "pause" : "play"

    function openMenu(place: Item, x: real, y: real) {
        menu.active = true;
        (menu.item as CardMenu).popup(place, x, y);
    }

    objectName: "card" + watcherId
    color: watching ? TD.card : TD.field
    borderColor: hover.hovered ? TD.tint(TD.accent, 0.5) : TD.hairline
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Behavior on borderColor {
        enabled: !TD.reduceMotion
        ColorAnimation { duration: TD.quick }
    }

    Keys.onPressed: event => {
        if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier))
            openMenu(more, 0, more.height);
        else if (event.key === Qt.Key_F2)
            card.renameAsked();
        else if (event.key === Qt.Key_Delete)
            card.deleteAsked();
        else
            return;
        event.accepted = true;
    }

    ColumnLayout {
        width: parent.width
        spacing: 2

        HoverHandler { id: hover }
        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: point => card.openMenu(parent, point.position.x, point.position.y)
        }

        RowLayout {
            spacing: TD.s + 2
            TDLabel {
                Layout.fillWidth: true
                Layout.maximumWidth: Math.ceil(implicitWidth)
                text: card.title
                color: card.watching ? TD.text : TD.textSecondary
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                maximumLineCount: 1
                font { pixelSize: TD.cardTitle; bold: true }
            }
            TDBadge { text: card.source }
            Item { Layout.fillWidth: true }
            TDSwitch {
                label: "Overvåker " + card.quotedTitle
                checked: card.watching
                onToggled: {
                    card.watchingAsked(checked);
                    checked = Qt.binding(() => card.watching);
                }
            }
        }
        TDLabel {
            Layout.fillWidth: true
            text: card.route
            color: card.watching ? TD.text : TD.textSecondary
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 2
            lineHeight: 1.15
            font.weight: Font.Medium
        }
        Flow {
            Layout.fillWidth: true
            Layout.topMargin: TD.xs
            spacing: TD.xs
            Repeater {
                model: [card.outbound, card.homebound, card.cabins]
                TDLabel {
                    required property string modelData
                    visible: text !== ""
                    width: Math.min(implicitWidth, parent.width)
                    rightPadding: TD.m
                    text: modelData
                    color: TD.textSecondary
                    elide: Text.ElideRight
                    maximumLineCount: 1
                }
            }
        }
        RowLayout {
            visible: card.past
            Layout.topMargin: TD.s
            spacing: TD.m
            TDLabel {
                Layout.fillWidth: true
                Layout.maximumWidth: Math.ceil(implicitWidth)
                text: "Alle datoene er passert."
                color: TD.badgeText(TD.warn, false)
                elide: Text.ElideRight
                font.weight: Font.DemiBold
            }
            TDButton {
                text: "Flytt datoene…"
                onClicked: card.moveAsked()
            }
            Item { Layout.fillWidth: true }
        }
        RowLayout {
            Layout.topMargin: TD.s
            Layout.bottomMargin: -TD.xs
            spacing: TD.m
            TDLabel {
                text: card.hitsText
                color: card.hasHits ? TD.success : TD.textSecondary
                font.weight: Font.DemiBold
            }
            TDLabel {
                Layout.fillWidth: true
                text: card.status
                color: TD.textSecondary
                elide: Text.ElideRight
            }
            Row {
                // The last symbol stands flush with the switch above it.
                Layout.rightMargin: -6
                TDIconButton {
                    label: card.toggleText
                    symbol: card.toggleSymbol
                    onClicked: card.toggleAsked()
                }
                TDIconButton {
                    label: "Rediger søket…"
                    symbol: "slider.horizontal.3"
                    onClicked: card.editAsked()
                }
                TDIconButton {
                    label: "Gi nytt navn…"
                    symbol: "pencil"
                    onClicked: card.renameAsked()
                }
                TDIconButton {
                    id: more
                    label: "Slett…"
                    symbol: "trash"
                    color: TD.danger
                    onClicked: card.deleteAsked()
                }
            }
        }
    }

    // Made when it is first wanted: most cards never show it.
    Loader {
        id: menu
        active: false
        sourceComponent: CardMenu {
            CardMenuItem {
                text: card.toggleText
                symbol: card.toggleSymbol
                onTriggered: card.toggleAsked()
            }
            CardMenuItem {
                text: "Rediger søket…"
                symbol: "slider.horizontal.3"
                onTriggered: card.editAsked()
            }
            CardMenuItem {
                text: "Gi nytt navn…"
                symbol: "pencil"
                onTriggered: card.renameAsked()
            }
            CardMenuItem {
                text: "Slett…"
                symbol: "trash"
                ink: TD.danger
                onTriggered: card.deleteAsked()
            }
        }
    }
}
