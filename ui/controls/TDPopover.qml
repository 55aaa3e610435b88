// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** Floats over what is below its parent. Escape and a press outside close it. */
T.Popup {
    id: popover

    /** The accessible name. */
    property string label

    y: parent ? parent.height + 6 : 0
    padding: TD.l
    margins: 8
    focus: true
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    background: TDFloatingGround {
        Accessible.role: Accessible.Dialog
        Accessible.name: popover.label
    }
    readonly property FocusReturn focusReturn: FocusReturn { popup: popover }
    onAboutToShow: focusReturn.remember(parent ? parent.Window.window : null)
    onClosed: focusReturn.giveBack()
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: TD.quick } }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: TD.quick } }
}
