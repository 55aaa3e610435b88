// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Session
import Tindra.Theme

/** The sidebar's warning while nobody is signed in. */
TDCard {
    id: card

    required property SASLoginPillModel model

    visible: model.isLoggedOut
    padding: TD.m
    shadowed: false
    borderColor: TD.tint(TD.danger, 0.5)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title.text

    ColumnLayout {
        width: parent.width
        spacing: TD.xs
        TDLabel {
            id: title
            Layout.fillWidth: true
            text: "Ikke innlogget hos SAS"
            wrapMode: Text.Wrap
            font.weight: Font.DemiBold
        }
        TDLabel {
            Layout.fillWidth: true
            text: "Søkene får ingen data før du logger inn på EuroBonus."
            wrapMode: Text.Wrap
            color: TD.textSecondary
            font.pixelSize: TD.caption
        }
        TDButton {
            objectName: "cardLogin"
            Layout.fillWidth: true
            Layout.topMargin: TD.xs
            text: "Logg inn nå"
            kind: "filled"
            onClicked: card.model.openLogin()
        }
    }
}
