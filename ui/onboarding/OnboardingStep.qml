// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Onboarding
import Tindra.Theme

/** One numbered step; what can be done in it stands under its text. */
Rectangle {
    id: view

    required property onboardingStep step
    default property alias action: actions.data

    readonly property color circleBg: step.isDone ? TD.successBg : step.isActive ? TD.tint(TD.brand, 0.12) : TD.tint(TD.text, 0.06)

    implicitHeight: layout.implicitHeight + 2 * TD.l
    radius: TD.cardRadius
    color: step.isActive ? TD.card : "transparent"
    border { color: TD.accent; width: step.isActive ? 1 : 0 }
    opacity: step.isUpcoming ? 0.7 : 1
    Behavior on opacity { NumberAnimation { duration: TD.slow } }
    Accessible.role: Accessible.Grouping
    Accessible.name: step.number + ". " + step.title + (step.isDone ? ", ferdig" : "")

    RowLayout {
        id: layout
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: TD.l }
        spacing: TD.m
        Rectangle {
            Layout.alignment: Qt.AlignTop
            implicitWidth: 28
            implicitHeight: 28
            radius: 14
            color: view.circleBg
            TDIcon {
                anchors.centerIn: parent
                visible: view.step.isDone
                name: "checkmark"
                color: TD.readableOn(TD.success, TD.successBg)
                size: 14
            }
            TDLabel {
                anchors.centerIn: parent
                visible: !view.step.isDone
                text: view.step.number
                color: view.step.isActive ? TD.brand : TD.text
                font.bold: true
                Accessible.ignored: true
            }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3
            TDLabel {
                Layout.fillWidth: true
                text: view.step.title
                wrapMode: Text.Wrap
                font { pixelSize: 15; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
            }
            TDLabel {
                Layout.fillWidth: true
                text: view.step.line
                wrapMode: Text.Wrap
                // What is faded must be dark enough to be read.
                color: view.step.isUpcoming ? TD.text : TD.textSecondary
            }
            Flow {
                id: actions
                Layout.fillWidth: true
                Layout.topMargin: TD.s
                visible: visibleChildren.length > 0
                spacing: TD.s
            }
        }
    }
}
