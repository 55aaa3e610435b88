// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Session
import Tindra.Theme
import Tindra.Window

/** The application's name, its pages, and what concerns all of them. */
Rectangle {
    id: sidebar

    required property RootViewModel root
    required property SessionModel login
    /** Whether the panel has to be opened from here, for want of a status area. */
    property bool offersPanel: false
    signal panelRequested

    color: TD.sidebar
    Accessible.role: Accessible.Pane
    Accessible.name: "Tindra"

    Rectangle {
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        width: 1
        color: TD.hairline
    }

    ColumnLayout {
        anchors { fill: parent; margins: TD.m; topMargin: TD.l; rightMargin: TD.m + 1 }
        spacing: TD.xs

        RowLayout {
            Layout.leftMargin: TD.s
            Layout.bottomMargin: TD.m
            spacing: TD.s + 2
            Image {
                source: "qrc:/icons/tindra.svg"
                sourceSize { width: 26; height: 26 }
            }
            TDLabel {
                Layout.fillWidth: true
                text: "Tindra"
                font { pixelSize: TD.section + 1; bold: true }
            }
            TDIconButton {
                objectName: "openPanel"
                visible: sidebar.offersPanel
                symbol: "airplane"
                label: "Vis panelet"
                onClicked: sidebar.panelRequested()
            }
        }
        Repeater {
            id: entries
            model: [
                { text: "Dashboard", symbol: "gauge.with.needle", section: RootViewModel.Dashboard },
                { text: "Overvåkere", symbol: "scope", section: RootViewModel.Watchers },
                { text: "Treff", symbol: "sparkles", section: RootViewModel.Hits }
            ]
            SidebarEntry {
                id: entry
                required property var modelData
                required property int index
                objectName: "sidebar" + modelData.text
                Layout.fillWidth: true
                text: modelData.text
                symbol: modelData.symbol
                badge: modelData.section === RootViewModel.Hits ? sidebar.root.hitsBadge : ""
                current: sidebar.root.selection === modelData.section
                onClicked: sidebar.root.selection = modelData.section
                Keys.onDownPressed: (entries.itemAt(index + 1) ?? settingsButton).forceActiveFocus(Qt.TabFocusReason)
                Keys.onUpPressed: (entries.itemAt(index - 1) ?? entry).forceActiveFocus(Qt.TabFocusReason)
            }
        }
        Item { Layout.fillHeight: true }
        LoginWarningCard {
            Layout.fillWidth: true
            Layout.bottomMargin: TD.s
            model: sidebar.login
        }
        SidebarEntry {
            id: settingsButton
            objectName: "sidebarInnstillinger"
            Layout.fillWidth: true
            text: "Innstillinger"
            symbol: "gearshape"
            current: sidebar.root.selection === RootViewModel.Settings
            onClicked: sidebar.root.selection = RootViewModel.Settings
            Keys.onUpPressed: entries.itemAt(2).forceActiveFocus(Qt.TabFocusReason)
        }
    }
}
