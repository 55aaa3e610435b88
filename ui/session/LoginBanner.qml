// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Session
import Tindra.Theme

/** The dashboard's notice while nobody is signed in, or the airline asks to be left alone. */
TDCard {
    id: banner

    required property SessionModel model

    visible: model.bannerTitle !== ""
    readonly property color tone: model.isLoggedOut ? TD.danger : TD.warn

    borderColor: TD.tint(tone, 0.5)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title.text

    RowLayout {
        width: parent.width
        spacing: TD.l
        TDIcon {
            Layout.alignment: Qt.AlignVCenter
            name: banner.model.isLoggedOut ? "person.crop.circle.badge.exclamationmark" : "exclamationmark.triangle.fill"
            color: banner.tone
            size: 28
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            TDLabel {
                id: title
                Layout.fillWidth: true
                text: banner.model.bannerTitle
                wrapMode: Text.Wrap
                font { pixelSize: TD.section; weight: Font.DemiBold }
            }
            TDLabel {
                Layout.fillWidth: true
                text: banner.model.bannerText
                wrapMode: Text.Wrap
                color: TD.textSecondary
            }
        }
        TDButton {
            objectName: "bannerLogin"
            text: banner.model.isLoggedOut ? "Logg inn på SAS" : "Prøv nå"
            kind: "cta"
            onClicked: banner.model.isLoggedOut ? banner.model.openLogin() : banner.model.tryNow()
        }
    }
}
