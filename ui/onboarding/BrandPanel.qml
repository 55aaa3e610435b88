// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme

/** What the program does, and what a find looks like. */
Rectangle {
    id: panel

    readonly property int margin: width < 460 ? TD.xxl : 48
    readonly property int inner: Math.min(width - 2 * margin, 480)

    color: TD.panel

    Row {
        x: words.x
        y: panel.margin
        spacing: 10
        TDIcon {
            name: "tindra"
            color: TD.peach
            size: 22
        }
        TDLabel {
            anchors.verticalCenter: parent.verticalCenter
            text: "Tindra"
            color: TD.panelText
            font { pixelSize: TD.section; bold: true }
        }
    }
    Column {
        id: words
        x: panel.margin + Math.max(0, (panel.width - 2 * panel.margin - panel.inner) / 2)
        anchors.verticalCenter: parent.verticalCenter
        width: panel.inner
        spacing: TD.l

        component Headline: TDLabel {
            width: parent.width
            wrapMode: Text.Wrap
            lineHeight: 1.15
            font { pixelSize: panel.inner < 400 ? 27 : 32; bold: true }
        }

        Column {
            width: parent.width
            Accessible.role: Accessible.Heading
            Accessible.name: promise.text + " " + catcher.text
            Headline {
                id: promise
                Accessible.ignored: true
                text: "Én saver-billett i business forsvinner på minutter."
                color: TD.panelText
            }
            Headline {
                id: catcher
                Accessible.ignored: true
                text: "Tindra fanger den for deg."
                color: TD.peach
            }
        }
        TDLabel {
            width: parent.width
            text: "Appen sjekker rutene dine hvert 10. minutt og varsler deg i det øyeblikket det åpner seg plass."
            wrapMode: Text.Wrap
            lineHeight: 1.3
            color: TD.tint(TD.panelText, 0.8)
            font.pixelSize: 15
        }
        Item { width: 1; height: TD.xs }
        Rectangle {
            id: example

            // Opaque, so that what stands on it can be made readable.
            readonly property color ground: Qt.tint(TD.panel, TD.tint(TD.panelText, 0.1))

            width: parent.width
            height: card.implicitHeight + 36
            radius: TD.passRadius - 4
            color: ground
            border { color: TD.tint(TD.panelText, 0.2); width: 1 }
            Accessible.role: Accessible.Grouping
            Accessible.name: heading.text
            Column {
                id: card
                x: 18
                y: 18
                width: parent.width - 36
                spacing: 6
                TDSectionTitle {
                    id: heading
                    small: true
                    text: "EKSEMPEL PÅ TREFF"
                    color: TD.tint(TD.panelText, 0.75)
                }
                TDLabel {
                    width: parent.width
                    text: "Oslo → New York"
                    color: TD.panelText
                    wrapMode: Text.Wrap
                    font { pixelSize: TD.figure; bold: true }
                }
                TDLabel {
                    width: parent.width
                    text: "Business · 60 000 poeng"
                    color: TD.readableOn(TD.success, example.ground)
                    wrapMode: Text.Wrap
                    font.weight: Font.DemiBold
                }
            }
        }
    }
}
