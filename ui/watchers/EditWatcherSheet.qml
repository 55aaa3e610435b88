// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Search
import Tindra.Theme
import Tindra.Watchers

/** Changes what a watcher watches. Return saves from every field that has no use for it itself. */
TDSheet {
    id: view

    required property EditWatcherSheetModel sheet

    sheetWidth: 640
    title: sheet.title
    onSubmitted: view.sheet.save()
    onOpened: nameField.forceActiveFocus(Qt.TabFocusReason)

    Connections {
        target: view.sheet
        function onFinished() { view.close(); }
    }

    buttons: [
        TDButton {
            text: "Avbryt"
            onClicked: view.close()
        },
        TDButton {
            text: "Lagre"
            kind: "filled"
            enabled: view.sheet.canSave
            onClicked: view.sheet.save()
        }
    ]

    ColumnLayout {
        Layout.fillWidth: true
        spacing: TD.l
        ColumnLayout {
            spacing: TD.xs
            TDSectionTitle { small: true; text: "NAVN" }
            TDTextField {
                id: nameField
                objectName: "nameField"
                Layout.fillWidth: true
                horizontalAlignment: TextInput.AlignLeft
                placeholderText: "F.eks. USA i business"
                text: view.sheet.name
                onTextEdited: view.sheet.name = text
                Accessible.name: "Navn"
            }
        }
        RowLayout {
            spacing: TD.xl
            AirportField {
                objectName: "originField"
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                field: view.sheet.origin
            }
            AirportField {
                objectName: "destinationField"
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                field: view.sheet.destination
            }
        }
        RowLayout {
            spacing: TD.s
            TDSwitch {
                id: roundTrip
                label: "Tur/retur"
                checked: view.sheet.roundTrip
                onToggled: view.sheet.roundTrip = checked
            }
            TDLabel {
                text: "Tur/retur"
                Accessible.ignored: true
                TapHandler { onTapped: view.sheet.roundTrip = !view.sheet.roundTrip }
            }
        }
        RowLayout {
            spacing: TD.l
            DateWindowField {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                field: view.sheet.outbound
            }
            DateWindowField {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                visible: view.sheet.roundTrip
                field: view.sheet.homebound
            }
            Item {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                visible: !view.sheet.roundTrip
            }
        }
        ColumnLayout {
            spacing: TD.s
            TDSectionTitle { small: true; text: "KLASSE" }
            ClassChips {
                Layout.fillWidth: true
                cabins: view.sheet.cabins
            }
        }
        GridLayout {
            columns: 3
            columnSpacing: TD.xl
            TDStepper {
                text: "Min. seter: " + value
                from: 1
                to: view.sheet.mostSeats
                value: view.sheet.minSeats
                onPicked: seats => view.sheet.minSeats = seats
            }
            TDStepper {
                text: "Maks stopp: " + value
                from: 0
                to: view.sheet.mostStops
                value: view.sheet.maxStops
                onPicked: stops => view.sheet.maxStops = stops
            }
            TDCheckBox {
                text: "Inkluder partnere (SkyTeam)"
                checked: view.sheet.includePartners
                onToggled: view.sheet.includePartners = checked
            }
        }
        TDLabel {
            objectName: "sheetProblem"
            Layout.fillWidth: true
            visible: text !== ""
            text: view.sheet.problem
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            color: TD.warn
            Accessible.role: Accessible.AlertMessage
        }
    }
}
