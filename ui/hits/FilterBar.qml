// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme
import Tindra.Hits

/** What is shown and in which order, and what can be done with all of it. */
Flow {
    id: bar

    required property HitsPage page

    spacing: TD.m

    TDComboBox {
        objectName: "watcherPicker"
        width: 220
        label: "Overvåker"
        model: bar.page.filter.watcherNames
        currentIndex: bar.page.filter.watcherIndex
        onActivated: index => bar.page.filter.watcherIndex = index
    }
    TDSegmented {
        objectName: "sortPicker"
        width: 320
        label: "Sortering"
        model: bar.page.filter.sortOrders
        currentIndex: bar.page.filter.sortOrder
        onPicked: index => bar.page.filter.sortOrder = index
    }
    Row {
        id: order
        spacing: TD.s
        TDLabel {
            anchors.verticalCenter: parent.verticalCenter
            text: "Kort:"
            color: TD.textSecondary
            Accessible.ignored: true
        }
        TDComboBox {
            id: cards
            objectName: "cardPicker"
            label: "Kort:"
            model: bar.page.filter.cardOrders
            currentIndex: bar.page.filter.cardOrder
            Accessible.description: tip.text
            onActivated: index => bar.page.filter.cardOrder = index
            TDToolTip {
                id: tip
                text: "Rekkefølgen på kortene i hver reisegruppe"
                shown: cards.hovered && !cards.popup.visible
            }
        }
    }
    // What follows keeps together, in the rest of the line or on one of its own.
    Item {
        readonly property real needed: hide.width + bar.spacing + actions.width
        readonly property real rest: bar.width - order.x - order.width - bar.spacing
        width: rest >= needed ? rest : bar.width
        height: actions.height
        TDCheckBox {
            id: hide
            objectName: "hideSoldOut"
            height: TD.controlHeight
            text: "Skjul utsolgte"
            checked: bar.page.filter.hideSoldOut
            onToggled: bar.page.filter.hideSoldOut = checked
        }
        Row {
            id: actions
            anchors.right: parent.right
            spacing: TD.m
            TDLabel {
                objectName: "count"
                anchors.verticalCenter: parent.verticalCenter
                text: bar.page.countText
                color: TD.textSecondary
            }
            TDIconButton {
                objectName: "exportTable"
                anchors.verticalCenter: parent.verticalCenter
                symbol: "square.and.arrow.up"
                label: "Lagre treffene som CSV"
                enabled: bar.page.emptyText === ""
                onClicked: bar.page.exportTable()
            }
            TDButton {
                objectName: "clear"
                text: "Tøm treff"
                enabled: bar.page.hasMatches
                onClicked: bar.page.confirmClear = true
            }
        }
    }
}
