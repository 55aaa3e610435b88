// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Session
import Tindra.Theme

/** The dashboard's notice while nobody is signed in. */
TDCard {
    id: banner

    required property SASLoginPillModel model

    visible: model.isLoggedOut
    borderColor: TD.tint(TD.danger, 0.5)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title.text

    RowLayout {
        width: parent.width
        spacing: TD.l
        TDIcon {
            Layout.alignment: Qt.AlignVCenter
            name: "person.crop.circle.badge.exclamationmark"
            color: TD.danger
            size: 28
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            TDLabel {
                id: title
                Layout.fillWidth: true
                text: "Ikke innlogget hos SAS"
                wrapMode: Text.Wrap
                font { pixelSize: TD.section; weight: Font.DemiBold }
            }
            TDLabel {
                Layout.fillWidth: true
                text: "Søkene kjører, men får ingen data uten EuroBonus-innlogging. Logg inn én gang — etterpå går alt av seg selv."
                wrapMode: Text.Wrap
                color: TD.textSecondary
            }
        }
        TDButton {
            objectName: "bannerLogin"
            text: "Logg inn på SAS"
            kind: "cta"
            onClicked: banner.model.openLogin()
        }
    }
}
