// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme

Item {
    id: gallery

    required property MonthCalendar calendar
    required property var symbols

    TDScrollPage {
        anchors.fill: parent
        title: "Kontroller"
        actions: [
            TDLabel { text: "2 aktive"; color: TD.textSecondary },
            TDButton { text: "Sjekk alle nå" }
        ]

        Flow {
            width: parent.width
            spacing: TD.s
            TDButton { text: "Søk"; symbol: "arrow.right"; symbolLast: true; kind: "cta"; large: true }
            TDButton { text: "Lagre"; kind: "filled" }
            TDButton { text: "Vanlig" }
            TDButton { text: "Book på SAS →"; kind: "plain" }
            TDButton { text: "Slett…"; kind: "destructive"; onClicked: confirmation.open() }
            TDButton { text: "Gi nytt navn…"; symbol: "pencil"; onClicked: dialog.open() }
            TDButton { text: "Rediger…"; symbol: "slider.horizontal.3"; onClicked: sheet.open() }
            TDButton { text: "Lagre"; enabled: false }
            TDButton { text: "Lagre"; kind: "cta"; enabled: false }
            TDIconButton { symbol: "pause"; label: "Pause" }
            TDIconButton { symbol: "trash"; label: "Slett"; color: TD.danger }
            TDIconButton { symbol: "arrow.left.arrow.right"; label: "Bytt"; bordered: true; size: 34; color: TD.accent }
            TDButton {
                text: "Flere valg"
                symbol: "chevron.down"
                symbolLast: true
                onClicked: options.open()
                TDPopover {
                    id: options
                    label: "Flere valg"
                    TDTextField { Layout.fillWidth: true; placeholderText: "F.eks. USA i business" }
                    TDStepper { Layout.fillWidth: true; text: "Min. seter: " + value; from: 1; to: 9; value: 1 }
                    TDStepper { Layout.fillWidth: true; text: "Maks stopp: " + value; from: 0; to: 3; value: 2 }
                    TDCheckBox { text: "Inkluder partnere (SkyTeam)"; checked: true }
                }
            }
        }
        TDCard {
            width: parent.width
            radius: TD.passRadius
            padding: 0
            Column {
                width: parent.width
                Item {
                    width: parent.width
                    height: 150
                    TDRadioPills { x: TD.xl; y: TD.l; label: "Reisetype"; model: ["⇄ Tur/retur", "→ Én vei"] }
                    TDTextField { x: TD.xl; y: 70; width: 320; large: true; text: "OSL, BGO"; Accessible.name: "Fra" }
                    TDTextField { x: 380; y: 70; width: 400; large: true; placeholderText: "JFK, EWR, ORD — eller bynavn" }
                    TDLabel { x: TD.xl; y: 122; text: "Oslo · Bergen"; color: TD.textSecondary }
                }
                PerforationDivider { width: parent.width }
                Item {
                    width: parent.width
                    height: 70
                    Row {
                        x: TD.xl
                        y: TD.l
                        spacing: TD.s
                        TDChip { text: "Økonomi"; checkable: true }
                        TDChip { text: "Business"; checkable: true; checked: true }
                        TDChip { text: "🇺🇸 USA i business" }
                        TDChip { text: "First"; enabled: false }
                    }
                }
            }
        }
        Flow {
            width: parent.width
            spacing: TD.l
            TDComboBox { width: 220; label: "Overvåker"; model: ["Alle overvåkere", "USA i business", "Asia i business"] }
            TDSegmented { label: "Rekkefølge"; model: ["Per region", "Nyest funnet", "Billigst"] }
            TDSegmented { width: 320; label: "Bred"; model: ["5 min", "10 min", "30 min"]; currentIndex: 1 }
            TDCheckBox { text: "Skjul utsolgte" }
            TDCheckBox { text: "Valgt"; checked: true }
            TDSwitch { label: "På"; checked: true }
            TDSwitch { label: "Av" }
            TDSwitch { label: "Sperret"; checked: true; enabled: false }
            TDTextField { placeholderText: "EuroBonus-nummer eller e-post"; width: 250 }
            TDTextField { text: "passord"; placeholderText: "Passord"; echoMode: TextInput.Password }
            TDStepper { text: "Min. seter: " + value; from: 1; to: 9; value: 1 }
        }
        Flow {
            width: parent.width
            spacing: TD.s
            Repeater {
                model: ["brand", "accent", "success", "danger", "warn"]
                TDBadge { required property string modelData; text: modelData.toUpperCase(); color: TD[modelData] }
            }
            Repeater {
                model: ["brand", "accent", "success", "danger", "warn", "peach"]
                TDBadge { required property string modelData; text: modelData.toUpperCase(); color: TD[modelData]; filled: true }
            }
            TDFarePill { text: "Business · 2 seter · 60 000 poeng" }
        }
        TDCard {
            width: parent.width
            Column {
                width: parent.width
                spacing: TD.s
                TDSectionTitle { text: "SISTE SJEKK · 14:05"; small: true }
                TDSectionTitle { text: "🇺🇸 USA & Canada" }
                Row {
                    spacing: TD.s
                    TDStatusDot { anchors.verticalCenter: parent.verticalCenter; color: TD.accent; pulsing: true }
                    TDLabel { text: "Sjekker USA i business — OSL→JFK" }
                    TDFigures { text: "11:05"; font { pixelSize: TD.figure; bold: true } }
                    TDFigures { text: "28:48"; font { pixelSize: TD.figure; bold: true } }
                }
                TDProgressBar { width: parent.width; label: "Oppslag"; value: 0.38 }
                TDProgressBar { width: parent.width; label: "Sjekker"; indeterminate: true }
                Repeater {
                    model: ["text", "textSecondary", "textTertiary", "accent", "success", "danger", "warn"]
                    TDLabel { required property string modelData; text: modelData; color: TD[modelData] }
                }
            }
        }
        Row {
            spacing: TD.xl
            TDCard {
                TDMonthCalendar { calendar: gallery.calendar }
            }
            Grid {
                columns: 8
                spacing: TD.l
                Repeater {
                    model: gallery.symbols
                    TDIcon { required property string modelData; name: modelData; size: 24 }
                }
            }
            TDEmptyState { width: 280; symbol: "sparkles"; text: "Ingen treff ennå. Når et søk finner ny saver-plass, dukker reisen opp her." }
        }
    }

    TDUndoBar { id: undo; Component.onCompleted: show("Overvåkeren «USA i business» er slettet.") }

    TDDialog {
        id: dialog
        title: "Gi søket nytt navn"
        message: "Navnet vises på overvåkeren og grupperer treffene på Treff-siden."
        actionText: "Lagre"
        TDTextField { Layout.fillWidth: true; placeholderText: "F.eks. Høstferie" }
    }
    TDDialog {
        id: confirmation
        title: "Slette overvåkeren «USA i business»?"
        actionText: "Slett"
        destructive: true
    }
    TDSheet {
        id: sheet
        title: "Rediger «USA i business»"
        buttons: [
            TDButton { text: "Avbryt"; onClicked: sheet.close() },
            TDButton { text: "Lagre"; kind: "filled" }
        ]
        TDSectionTitle { text: "NAVN"; small: true }
        TDTextField { Layout.fillWidth: true; placeholderText: "F.eks. USA i business" }
        Repeater {
            model: 9
            TDStepper { Layout.fillWidth: true; text: "Min. seter: " + value; value: 2 }
        }
    }
}
