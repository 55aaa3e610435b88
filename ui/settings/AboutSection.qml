// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Settings
import Tindra.Theme

/** What the program says of itself. */
SettingsSection {
    id: section

    required property AboutTindraModel about

    title: "OM TINDRA"

    component Fact: TDLabel {
        color: TD.textSecondary
    }

    SettingRow {
        first: true
        title: "Tindra"
        Fact { text: section.about.version }
    }
    SettingRow {
        objectName: "engine"
        title: "Nettlesermotor"
        note: section.about.engineWarning
        noteColor: TD.warn
        Fact { text: section.about.engineVersion }
    }
    SettingRow {
        objectName: "dataFolder"
        title: "Datamappe"
        note: section.about.dataFolder
    }
    SettingRow {
        title: "Feilsøking"
        note: section.about.isCopied ? "Diagnosen er kopiert ✓"
                                     : "Versjoner, tilstand og de siste linjene i loggen, uten noe privat."
        noteColor: section.about.isCopied ? TD.success : TD.textSecondary
        TDButton {
            objectName: "copyDiagnosis"
            text: "Kopier diagnose"
            symbol: "doc.on.doc"
            onClicked: section.about.copyDiagnosis()
        }
    }
}
