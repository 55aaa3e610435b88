// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Settings
import Tindra.Theme

/** The settings screen. Everything is stored as it is changed. */
TDScrollPage {
    id: page

    required property SettingsViewModel model

    readonly property bool shown: visible
    onShownChanged: shown ? model.open() : model.close()

    title: "Innstillinger"
    contentMaxWidth: 620
    spacing: 22

    AccountSection {
        model: page.model
    }
    SettingsSection {
        title: "VARSLING"
        SwitchRow {
            objectName: "notify"
            first: true
            title: "Skrivebordsvarsler ved nye treff"
            note: "Med bookinglenke rett til SAS"
            on: page.model.notifyOn
            onSwitched: on => page.model.notifyOn = on
        }
        SwitchRow {
            objectName: "notifySoldOut"
            title: "Varsle når treff blir utsolgt"
            note: "Kortet får uansett UTSOLGT-merke i appen. Partner-plasser kommer og går fort — skru av hvis varslene blir mas."
            on: page.model.notifySoldOut
            onSwitched: on => page.model.notifySoldOut = on
        }
        SettingRow {
            title: "Se hvordan et varsel ser ut"
            TDButton {
                objectName: "testNotification"
                text: "Test varsel"
                // There is nothing to see while notifications are off.
                enabled: page.model.notifyOn
                onClicked: page.model.testNotification()
            }
        }
    }
    SettingsSection {
        title: "FELLESSKAP"
        SwitchRow {
            objectName: "shareHits"
            first: true
            title: "Del treff anonymt og se fellesskapets treff"
            note: "Funn deles uten brukeridentitet og utløper etter 90 minutter. Flere jegere = raskere varsler for alle."
            on: page.model.shareHits
            onSwitched: on => page.model.shareHits = on
        }
    }
    SettingsSection {
        title: "SJEKK-INTERVALL"
        SettingRow {
            first: true
            title: "Hvor ofte sjekkes rutene"
            TDSegmented {
                id: interval
                objectName: "interval"
                label: "Hvor ofte sjekkes rutene"
                model: page.model.intervalLabels
                currentIndex: page.model.intervalIndex
                onPicked: index => {
                    page.model.pickInterval(index);
                    // What could not be stored is not kept either.
                    Qt.callLater(() => interval.currentIndex = Qt.binding(() => page.model.intervalIndex));
                }
            }
        }
    }
    SettingsSection {
        title: "START OG BAKGRUNN"
        visible: page.model.offersAutostart
        SwitchRow {
            readonly property bool failed: page.model.autostartProblem !== ""
            objectName: "autostart"
            first: true
            title: "Start Tindra ved innlogging på maskinen"
            note: failed ? page.model.autostartProblem : "Uten vindu — jakten går i gang i bakgrunnen."
            noteColor: failed ? TD.warn : TD.textSecondary
            on: page.model.autostartOn
            onSwitched: on => page.model.autostartOn = on
        }
    }
    AboutSection {
        about: page.model.about
    }
}
