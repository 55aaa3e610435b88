// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Onboarding
import Tindra.Theme

/** The screen before the first hunt: what the program does, and three steps. */
Item {
    id: screen

    required property OnboardingViewModel model

    BrandPanel {
        id: brand
        width: Math.round(Math.min(parent.width * 0.47, 720))
        height: parent.height
    }
    TDScrollPage {
        id: page

        readonly property int room: height - 2 * padding

        anchors { left: brand.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        padding: height < 700 ? TD.xxl : 72
        contentMaxWidth: 560
        Accessible.name: heading.text

        // As high as the page, so that the button stands at the foot of it; higher where it must.
        Item {
            width: parent.width
            height: Math.max(page.room, steps.height + TD.xl + start.height)
            Column {
                id: steps
                width: parent.width
                spacing: TD.s
                TDLabel {
                    id: heading
                    text: "Kom i gang"
                    font { pixelSize: TD.pageTitle; bold: true }
                    Accessible.role: Accessible.Heading
                }
                TDLabel {
                    width: parent.width
                    bottomPadding: page.height < 700 ? TD.s : TD.xl
                    text: "Tre steg — du er i gang på under to minutter."
                    wrapMode: Text.Wrap
                    color: TD.textSecondary
                }
                OnboardingStep {
                    objectName: "connectionStep"
                    width: parent.width
                    step: screen.model.connectionStep
                    TDButton {
                        objectName: "openLogin"
                        visible: !screen.model.connectionStep.isDone
                        text: "Åpne SAS og logg inn"
                        kind: "filled"
                        onClicked: screen.model.openLogin()
                        // The keyboard goes on with the next step.
                        onVisibleChanged: {
                            if (!visible && focus)
                                presets.itemAt(0).forceActiveFocus();
                        }
                    }
                }
                OnboardingStep {
                    objectName: "routeStep"
                    width: parent.width
                    step: screen.model.routeStep
                    Repeater {
                        id: presets
                        model: screen.model.presetLabels
                        TDChip {
                            required property string modelData
                            required property int index
                            objectName: "preset" + index
                            text: modelData
                            onClicked: screen.model.choosePreset(index)
                        }
                    }
                }
                OnboardingStep {
                    objectName: "notificationStep"
                    width: parent.width
                    step: screen.model.notificationStep
                }
            }
            TDButton {
                id: start
                objectName: "start"
                anchors.bottom: parent.bottom
                text: "Start jakten →"
                kind: "cta"
                large: true
                onClicked: screen.model.finish()
            }
        }
    }
}
