// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Search
import Tindra.Session
import Tindra.Theme
import Tindra.Window

/** The first page: what needs attention, the search form, and three figures. */
FocusScope {
    id: view

    required property DashboardViewModel figures
    required property BoardingPassSearchCardModel form
    required property SessionModel login
    signal selected(int section)

    TDScrollPage {
        id: scroll
        anchors.fill: parent
        focus: true
        title: "Dashboard"

        LoginBanner {
            width: parent.width
            model: view.login
        }
        PollErrorStrip {
            objectName: "errorStrip"
            width: parent.width
            visible: text !== ""
            text: view.figures.errorText
            onClicked: view.selected(RootViewModel.Watchers)
        }
        BoardingPassSearchCard {
            width: parent.width
            form: view.form
            ground: TD.window
            onReveal: item => scroll.reveal(item)
        }
        RowLayout {
            width: parent.width
            spacing: TD.l
            StatCard {
                objectName: "statWatchers"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "scope"
                title: "Overvåkere"
                value: view.figures.watchersValue
                sub: view.figures.pausedText
                onClicked: view.selected(RootViewModel.Watchers)
            }
            StatCard {
                objectName: "statHits"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "sparkles"
                title: "Treff"
                value: view.figures.hitsValue
                sub: view.figures.hitsText
                accented: view.figures.hasNewHits
                onClicked: view.selected(RootViewModel.Hits)
            }
            StatCard {
                objectName: "statLastCheck"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "clock.arrow.circlepath"
                title: "Siste sjekk"
                value: view.figures.lastCheckValue
                sub: view.figures.lastCheckSub
                onClicked: view.selected(RootViewModel.Watchers)
            }
        }
    }
}
