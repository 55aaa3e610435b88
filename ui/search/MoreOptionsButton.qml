// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** The options that most searches leave alone. */
TDButton {
    id: button

    required property BoardingPassSearchCardModel form
    property alias open: options.visible

    text: "Flere valg"
    symbol: "chevron.down"
    symbolLast: true
    onClicked: open = !open
    Accessible.role: Accessible.ButtonDropDown

    TDPopover {
        id: options
        label: button.text
        x: button.width - width
        width: 220 + 2 * padding
        onOpened: name.forceActiveFocus()

        TDLabel {
            text: "Navn på overvåkeren"
            color: TD.textSecondary
            font { pixelSize: TD.caption; weight: Font.DemiBold }
            Accessible.ignored: true
        }
        TDTextField {
            id: name
            objectName: "name"
            Layout.fillWidth: true
            Layout.topMargin: TD.xs - TD.m
            placeholderText: "F.eks. USA i business"
            text: button.form.name
            onTextEdited: button.form.name = text
            Accessible.name: "Navn på overvåkeren"
            Keys.onReturnPressed: options.close()
            Keys.onEnterPressed: options.close()
        }
        TDStepper {
            Layout.fillWidth: true
            text: "Min. seter: " + button.form.minSeats
            from: 1
            to: button.form.mostSeats
            value: button.form.minSeats
            onPicked: seats => button.form.minSeats = seats
        }
        TDStepper {
            Layout.fillWidth: true
            text: "Maks stopp: " + button.form.maxStops
            from: 0
            to: button.form.mostStops
            value: button.form.maxStops
            onPicked: stops => button.form.maxStops = stops
        }
        TDCheckBox {
            id: partners
            Layout.fillWidth: true
            text: "Inkluder partnere (SkyTeam)"
            checked: button.form.includePartners
            onToggled: button.form.includePartners = checked
            Accessible.description: help.text
        }
        TDLabel {
            id: help
            Layout.fillWidth: true
            Layout.leftMargin: partners.leftPadding
            Layout.topMargin: TD.xs - TD.m
            text: "Søker SAS' award-flyt som også priser partnerfly (Air France, KLM m.fl.) — nødvendig for byer SAS ikke flyr selv, f.eks. SXM."
            color: TD.textTertiary
            wrapMode: Text.Wrap
            font.pixelSize: TD.caption
        }
    }
}
