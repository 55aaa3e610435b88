// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme
import Tindra.Watchers

/** Strips and cards, with the dialogs that the cards open. */
Column {
    id: view

    required property WatchersSectionModel section
    property bool offersSearch: false
    signal searchRequested
    /** What the strips take in height, with the spacing below them. */
    readonly property real stripsHeight: strips.visible ? strips.height + spacing : 0

    spacing: TD.l

    Column {
        id: strips
        width: parent.width
        spacing: parent.spacing
        visible: view.section.activity.running || view.section.lastCheck.present
        ActivityStrip {
            width: parent.width
            strip: view.section.activity
        }
        LastCheckStrip {
            width: parent.width
            strip: view.section.lastCheck
        }
    }
    Repeater {
        model: view.section.cards
        WatcherCard {
            width: view.width
            onToggleAsked: view.section.toggle(watcherId)
            onWatchingAsked: on => view.section.setWatching(watcherId, on)
            onEditAsked: view.section.edit(watcherId)
            onMoveAsked: view.section.editMoved(watcherId)
            onRenameAsked: renaming.ask(watcherId, name)
            onDeleteAsked: deletion.ask(watcherId, quotedTitle)
        }
    }
    TDEmptyState {
        width: parent.width
        visible: view.section.empty
        symbol: "scope"
        text: "Ingen overvåkere ennå. Fyll inn reisedetaljer over og trykk Søk."
        TDButton {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: view.offersSearch
            text: "Nytt søk"
            symbol: "magnifyingglass"
            onClicked: view.searchRequested()
        }
    }

    TDDialog {
        id: renaming
        objectName: "renameDialog"
        property double watcherId
        title: "Gi søket nytt navn"
        message: "Navnet vises på overvåkeren og grupperer treffene på Treff-siden."
        actionText: "Lagre"
        initialFocus: newName
        onAccepted: view.section.rename(watcherId, newName.text)

        function ask(id: double, name: string) {
            watcherId = id;
            newName.text = name;
            open();
            newName.selectAll();
        }
        TDTextField {
            id: newName
            objectName: "newName"
            Layout.fillWidth: true
            horizontalAlignment: TextInput.AlignLeft
            placeholderText: "F.eks. Høstferie"
            Accessible.name: "Navn på overvåkeren"
        }
    }
    TDDialog {
        id: deletion
        objectName: "deleteDialog"
        property double watcherId
        destructive: true
        actionText: "Slett"
        onAccepted: view.section.remove(watcherId)

        function ask(id: double, name: string) {
            watcherId = id;
            title = "Slette overvåkeren «" + name + "»?";
            open();
        }
    }
    Loader {
        active: view.section.sheet !== null
        sourceComponent: EditWatcherSheet {
            sheet: view.section.sheet
            // Not at once: it would go while it is still closing.
            onClosed: Qt.callLater(view.section.closeSheet)
            Component.onCompleted: open()
        }
    }
}
