// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme
import Tindra.Watchers

/** What the worker does while a round runs. */
TDCard {
    id: view

    required property ActivityStripModel strip

    visible: strip.running
    Accessible.role: Accessible.Grouping
    Accessible.name: strip.statusText

    ColumnLayout {
        width: parent.width
        spacing: TD.s
        RowLayout {
            spacing: TD.m
            TDStatusDot {
                pulsing: true
                size: 9
                color: TD.accent
            }
            TDLabel {
                Layout.fillWidth: true
                text: view.strip.statusText
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                maximumLineCount: 1
                font.weight: Font.DemiBold
            }
            TDLabel {
                visible: text !== ""
                text: view.strip.lookupsText
                color: TD.textSecondary
            }
        }
        TDProgressBar {
            Layout.fillWidth: true
            Layout.topMargin: TD.xs
            label: "Runden"
            value: Math.max(0, view.strip.fraction)
            indeterminate: view.strip.fraction < 0
        }
        TDLabel {
            Layout.fillWidth: true
            // Its line is kept, so that the cards below do not move when it gets a text.
            text: view.strip.roundText === "" ? " " : view.strip.roundText
            color: TD.textTertiary
            font.pixelSize: TD.caption
            Accessible.ignored: view.strip.roundText === ""
        }
    }
}
