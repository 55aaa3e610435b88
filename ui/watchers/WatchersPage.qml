// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme
import Tindra.Watchers

/** All watchers, and what the worker does for them. */
FocusScope {
    id: page

    required property WatchersSectionModel section
    /** Whether an empty page offers a button that asks for the search form. */
    property bool offersSearch: false
    signal searchRequested

    Binding {
        target: page.section
        property: "shown"
        value: page.visible
    }

    TDScrollPage {
        id: scroll
        anchors.fill: parent
        padding: 18
        focus: true
        title: "Overvåkere"
        actions: [
            TDLabel {
                text: page.section.activeText
                color: TD.textSecondary
            },
            TDButton {
                text: "Sjekk alle nå"
                // Not disabled while a round runs: it would lose the focus.
                enabled: page.section.active
                opacity: page.section.canCheck ? 1 : 0.5
                onClicked: page.section.checkAll()
            }
        ]

        WatchersSection {
            id: cards
            width: parent.width
            section: page.section
            offersSearch: page.offersSearch
            onSearchRequested: page.searchRequested()

            // Cards that are being read stay where they are when a round begins or ends above them.
            property real above
            Component.onCompleted: above = stripsHeight
            onStripsHeightChanged: {
                if (scroll.contentY > 0 && scroll.contentY >= y)
                    scroll.contentY = Math.max(0, scroll.contentY + stripsHeight - above);
                above = stripsHeight;
            }
        }
    }
    TDUndoBar {
        id: undo
        objectName: "undoBar"
        onUndone: page.section.undoRemove()
    }
    Shortcut {
        sequences: [StandardKey.Undo]
        enabled: undo.visible && undo.undoable && page.visible
        onActivated: {
            undo.dismiss();
            page.section.undoRemove();
        }
    }
    Connections {
        target: page.section
        function onRemoved(text) {
            undo.undoable = true;
            undo.show(text);
            scroll.forceActiveFocus();
        }
        function onRefused(text) {
            undo.undoable = false;
            undo.show(text);
        }
    }
}
