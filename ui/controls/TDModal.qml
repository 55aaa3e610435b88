// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** The frame of what has to be answered before the page goes on. Escape closes it. */
T.Popup {
    id: modal

    property string title

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    padding: TD.xl
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    modal: true
    dim: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    background: TDFloatingGround {
        radius: TD.cardRadius
        Accessible.role: Accessible.Dialog
        Accessible.name: modal.title
    }
    T.Overlay.modal: Rectangle { color: TD.dark ? "#99000000" : "#661c1f24" }
    readonly property FocusReturn focusReturn: FocusReturn {}
    onAboutToShow: focusReturn.remember(parent)
    onClosed: focusReturn.giveBack()
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: TD.quick } }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: TD.quick } }
}
