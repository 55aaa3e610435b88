// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Hits
import Tindra.Onboarding
import Tindra.Search
import Tindra.Session
import Tindra.Settings
import Tindra.Theme
import Tindra.Watchers
import Tindra.Window

/** What the main window shows: the onboarding until that is finished, then all the rest. */
FocusScope {
    id: content

    required property RootViewModel root
    required property DashboardViewModel figures
    required property BoardingPassSearchCardModel form
    required property SessionModel login
    required property WatchersSectionModel watchers
    required property HitsPage hits
    required property SettingsViewModel settings
    required property OnboardingViewModel onboarding
    required property LifeCycleModel life

    Rectangle {
        anchors.fill: parent
        color: TD.window
    }
    Column {
        id: notices
        width: parent.width
        NoticeLine {
            objectName: "demoNote"
            width: parent.width
            visible: content.root.isDemo
            color: TD.tint(TD.accent, 0.14)
            ink: TD.badgeText(TD.accent, false)
            symbol: "airplane"
            text: "Demo: flyselskapet og de andre jegerne er liksom, og dine egne data røres ikke."
        }
        NoticeLine {
            objectName: "notice"
            width: parent.width
            visible: text !== ""
            color: TD.tint(TD.danger, 0.14)
            ink: TD.badgeText(TD.danger, false)
            symbol: "exclamationmark.triangle.fill"
            text: content.root.notice
            dismissable: content.root.canDismissNotice
            onDismissed: content.root.dismissNotice()
        }
    }
    Loader {
        anchors { top: notices.bottom; bottom: parent.bottom; left: parent.left; right: parent.right }
        focus: true
        sourceComponent: content.root.onboarded ? frame : firstSteps
    }
    Component {
        id: frame
        RootView {
            focus: true
            root: content.root
            figures: content.figures
            form: content.form
            login: content.login
            watchers: content.watchers
            hits: content.hits
            settings: content.settings
            life: content.life
        }
    }
    Component {
        id: firstSteps
        OnboardingView { model: content.onboarding }
    }
    TDDialog {
        id: question
        title: content.life.canHide ? "Fortsette jakten i bakgrunnen?" : "Avslutte jakten?"
        message: content.life.question
        actionText: content.life.canHide ? "Fortsett i bakgrunnen" : ""
        onAccepted: content.life.keepHunting()
        onRejected: content.life.stay()
        TDButton {
            objectName: "quit"
            Layout.topMargin: TD.s
            text: "Avslutt Tindra"
            kind: "destructive"
            onClicked: content.life.quit()
        }
    }
    Connections {
        target: content.life
        function onAskingChanged() {
            if (content.life.isAsking)
                question.open();
            else
                question.close();
        }
    }
}
