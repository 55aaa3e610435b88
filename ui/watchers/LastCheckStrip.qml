// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme
import Tindra.Watchers

/** What the last round has found. */
TDCard {
    id: view

    required property LastCheckStripModel strip

    visible: strip.present
    Accessible.role: Accessible.Grouping
    Accessible.name: strip.heading

    component Stat: Row {
        property string value
        property string label
        spacing: TD.xs
        Accessible.role: Accessible.StaticText
        Accessible.name: value + " " + label
        TDLabel { text: parent.value; font { pixelSize: TD.caption; bold: true } Accessible.ignored: true }
        TDLabel { text: parent.label; color: TD.textSecondary; font.pixelSize: TD.caption; Accessible.ignored: true }
    }

    Column {
        width: parent.width
        spacing: TD.s
        Flow {
            width: parent.width
            spacing: TD.l
            TDSectionTitle {
                small: true
                height: reference.height
                verticalAlignment: Text.AlignVCenter
                text: view.strip.heading
            }
            Stat { id: reference; value: view.strip.figures[0]; label: "overvåkere" }
            Stat { value: view.strip.figures[1]; label: "reiser gjennomgått" }
            Stat { value: view.strip.figures[2]; label: "traff filtrene" }
            TDLabel {
                visible: text !== ""
                text: view.strip.alertsText
                color: TD.success
                font { pixelSize: TD.caption; bold: true }
            }
            TDLabel {
                visible: text !== ""
                text: view.strip.soldOutText
                color: TD.danger
                font { pixelSize: TD.caption; bold: true }
            }
        }
        Repeater {
            model: view.strip.errorLines
            TDLabel {
                required property string modelData
                width: parent.width
                text: modelData
                color: TD.warn
                wrapMode: Text.Wrap
            }
        }
    }
}
