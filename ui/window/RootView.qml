// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Hits
import Tindra.Search
import Tindra.Session
import Tindra.Settings
import Tindra.Watchers
import Tindra.Window

/** The sidebar and, beside it, the page that is chosen there. */
FocusScope {
    id: view

    required property RootViewModel root
    required property DashboardViewModel figures
    required property BoardingPassSearchCardModel form
    required property SessionModel login
    required property WatchersSectionModel watchers
    required property HitsPage hits
    required property SettingsViewModel settings
    required property LifeCycleModel life

    SidebarView {
        id: sidebar
        width: 216
        height: parent.height
        root: view.root
        login: view.login
        offersPanel: !view.life.hasTray
        onPanelRequested: view.life.showPanel()
    }
    FocusScope {
        id: detail
        anchors { left: sidebar.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        focus: true

        DashboardView {
            anchors.fill: parent
            visible: view.root.selection === RootViewModel.Dashboard
            focus: visible
            figures: view.figures
            form: view.form
            login: view.login
            onSelected: section => view.root.selection = section
        }
        // The other pages are made when they are first looked at, and then keep their place.
        Loader {
            id: watchersPage
            anchors.fill: parent
            readonly property bool chosen: view.root.selection === RootViewModel.Watchers
            property bool wanted: false
            onChosenChanged: if (chosen) wanted = true
            active: wanted || chosen
            visible: chosen
            focus: chosen
            sourceComponent: WatchersPage {
                section: view.watchers
                offersSearch: true
                onSearchRequested: view.root.selection = RootViewModel.Dashboard
            }
        }
        Loader {
            id: hitsPage
            anchors.fill: parent
            readonly property bool chosen: view.root.selection === RootViewModel.Hits
            property bool wanted: false
            onChosenChanged: if (chosen) wanted = true
            active: wanted || chosen
            visible: chosen
            focus: chosen
            sourceComponent: HitsView { page: view.hits }
        }
        Loader {
            anchors.fill: parent
            active: view.root.selection === RootViewModel.Settings
            focus: active
            // The page is gone too soon to say it itself.
            onActiveChanged: if (!active) view.settings.close()
            sourceComponent: SettingsView { model: view.settings }
        }
    }
    Shortcut { sequences: ["Ctrl+1"]; onActivated: view.root.selection = RootViewModel.Dashboard }
    Shortcut { sequences: ["Ctrl+2"]; onActivated: view.root.selection = RootViewModel.Watchers }
    Shortcut { sequences: ["Ctrl+3"]; onActivated: view.root.selection = RootViewModel.Hits }
    Shortcut { sequences: ["Ctrl+,", "Ctrl+4"]; onActivated: view.root.selection = RootViewModel.Settings }
    Shortcut { sequences: [StandardKey.Refresh]; onActivated: view.watchers.checkAll() }
}
