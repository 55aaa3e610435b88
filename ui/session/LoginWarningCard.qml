// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Session
import Tindra.Theme

/** The sidebar's warning while nobody is signed in, or the airline asks to be left alone. */
TDCard {
    id: card

    required property SessionModel model

    visible: model.bannerTitle !== ""
    padding: TD.m
    shadowed: false
    readonly property color tone: model.isLoggedOut ? TD.danger : TD.warn

    borderColor: TD.tint(tone, 0.5)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title.text

    ColumnLayout {
        width: parent.width
        spacing: TD.xs
        TDLabel {
            id: title
            Layout.fillWidth: true
            text: card.model.bannerTitle
            wrapMode: Text.Wrap
            font.weight: Font.DemiBold
        }
        TDLabel {
            Layout.fillWidth: true
            text: card.model.cardText
            wrapMode: Text.Wrap
            color: TD.textSecondary
            font.pixelSize: TD.caption
        }
        TDButton {
            objectName: "cardLogin"
            Layout.fillWidth: true
            Layout.topMargin: TD.xs
            text: card.model.isLoggedOut ? "Logg inn nå" : "Prøv nå"
            kind: "filled"
            onClicked: card.model.isLoggedOut ? card.model.openLogin() : card.model.tryNow()
        }
    }
}
