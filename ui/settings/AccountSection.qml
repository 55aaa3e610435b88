// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Session
import Tindra.Settings
import Tindra.Theme

/** The session at the airline, and how it is renewed without the user. */
SettingsSection {
    id: section

    required property SettingsViewModel model

    title: "EUROBONUS-KONTO"

    Column {
        width: parent.width
        padding: TD.l
        spacing: TD.l
        RowLayout {
            width: parent.width - 2 * TD.l
            spacing: TD.m
            Rectangle {
                implicitWidth: 38
                implicitHeight: 38
                radius: 19
                color: TD.tint(TD.accent, 0.14)
                TDIcon {
                    anchors.centerIn: parent
                    name: "person"
                    color: TD.accent
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 3
                TDLabel {
                    Layout.fillWidth: true
                    text: "EuroBonus-innlogging"
                    font.weight: Font.DemiBold
                }
                TDLabel {
                    Layout.fillWidth: true
                    text: "Søkene kjører skjult i bakgrunnen — logg inn én gang i et synlig vindu."
                    wrapMode: Text.Wrap
                    color: TD.textSecondary
                    font.pixelSize: TD.caption
                }
                SASLoginPill {
                    Layout.fillWidth: true
                    model: section.model.pill
                }
            }
        }
        Flow {
            width: parent.width - 2 * TD.l
            spacing: TD.s
            TDButton {
                objectName: "openLogin"
                text: "Åpne SAS og logg inn"
                kind: "cta"
                onClicked: section.model.pill.openLogin()
            }
            TDButton {
                objectName: "checkLogin"
                text: "Sjekk innlogging"
                enabled: !section.model.pill.isChecking
                onClicked: section.model.checkLogin()
            }
        }
    }
    SwitchRow {
        objectName: "autoLogin"
        title: "Logg inn automatisk ved utlogging"
        on: section.model.autoLoginOn
        onSwitched: on => section.model.autoLoginOn = on
    }
    Column {
        id: form

        readonly property SignInDetailsModel details: section.model.details

        width: parent.width
        leftPadding: TD.l
        rightPadding: TD.l
        bottomPadding: TD.l
        spacing: 6
        RowLayout {
            width: parent.width - 2 * TD.l
            spacing: TD.s
            TDTextField {
                objectName: "ebUser"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                placeholderText: "EuroBonus-nummer eller e-post"
                text: form.details.ebUser
                inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
                onTextEdited: form.details.ebUser = text
                onAccepted: form.details.save()
            }
            TDTextField {
                objectName: "ebPassword"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                placeholderText: "Passord"
                text: form.details.ebPassword
                echoMode: TextInput.Password
                inputMethodHints: Qt.ImhSensitiveData | Qt.ImhHiddenText | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
                passwordCharacter: "•"
                onTextEdited: form.details.ebPassword = text
                onAccepted: form.details.save()
            }
            TDButton {
                objectName: "saveDetails"
                text: "Lagre"
                enabled: form.details.canSave
                onClicked: form.details.save()
            }
        }
        TDLabel {
            objectName: "detailsStored"
            visible: form.details.isStored
            text: "Detaljer lagret i nøkkelringen ✓"
            color: TD.success
            font.pixelSize: TD.caption
        }
        TDLabel {
            objectName: "keychainProblem"
            visible: text !== ""
            width: parent.width - 2 * TD.l
            text: form.details.problem
            wrapMode: Text.Wrap
            color: TD.warn
            font.pixelSize: TD.caption
        }
        TDLabel {
            width: parent.width - 2 * TD.l
            text: "SAS logger deg ut etter ca. ett døgn. Detaljene lagres kun i nøkkelringen på denne maskinen."
            wrapMode: Text.Wrap
            color: TD.textSecondary
            font.pixelSize: TD.caption
        }
    }
}
