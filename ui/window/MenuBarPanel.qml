// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme
import Tindra.Window

/** The compact panel: how the hunt goes, and its latest find. */
Rectangle {
    id: content

    required property MenuBarPanelModel panel
    /** Something was chosen that leads away from the panel. */
    signal done

    implicitWidth: 320
    implicitHeight: column.implicitHeight + 28
    color: TD.card
    Accessible.role: Accessible.Pane
    Accessible.name: "Tindra"

    ColumnLayout {
        id: column
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 14 }
        spacing: TD.m

        GridLayout {
            columns: 2
            columnSpacing: TD.s
            rowSpacing: TD.xs
            TDStatusDot {
                size: 8
                color: content.panel.isHunting ? TD.success : TD.textSecondary
            }
            TDLabel {
                Layout.fillWidth: true
                text: content.panel.headline
                font { pixelSize: TD.section + 1; bold: true }
            }
            TDLabel {
                Layout.column: 1
                Layout.row: 1
                Layout.fillWidth: true
                text: content.panel.countText
                color: TD.textSecondary
            }
        }
        RowLayout {
            visible: content.panel.warning !== ""
            spacing: TD.s
            TDStatusDot { size: 7; color: warning.color }
            TDLabel {
                id: warning
                Layout.fillWidth: true
                text: content.panel.warning
                color: content.panel.canTryNow ? TD.warn : TD.danger
                wrapMode: Text.Wrap
                font.pixelSize: TD.caption + 1
            }
        }
        TDCard {
            Layout.fillWidth: true
            visible: content.panel.hasLatest
            padding: TD.m
            shadowed: false
            color: TD.field
            ColumnLayout {
                width: parent.width
                spacing: 2
                TDLabel {
                    Layout.fillWidth: true
                    text: content.panel.latestRoute
                    font.weight: Font.DemiBold
                    elide: Text.ElideRight
                }
                TDLabel {
                    Layout.fillWidth: true
                    text: content.panel.latestText
                    color: TD.textSecondary
                    elide: Text.ElideRight
                    font.pixelSize: TD.caption + 1
                }
                TDButton {
                    objectName: "panelBook"
                    Layout.leftMargin: -leftPadding
                    // Its text, not its edge, keeps the card's padding.
                    Layout.bottomMargin: -TD.xs
                    implicitHeight: TD.target
                    visible: content.panel.canBook
                    text: "Book →"
                    kind: "plain"
                    onClicked: {
                        content.panel.book();
                        content.done();
                    }
                }
            }
        }
        RowLayout {
            spacing: TD.s
            TDButton {
                objectName: "panelCheck"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                text: content.panel.canTryNow ? "Prøv nå" : "Sjekk nå"
                onClicked: content.panel.canTryNow ? content.panel.tryNow() : content.panel.checkNow()
            }
            TDButton {
                objectName: "panelOpen"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                text: "Åpne Tindra"
                kind: "cta"
                onClicked: {
                    content.panel.openTindra();
                    content.done();
                }
            }
        }
    }
}
