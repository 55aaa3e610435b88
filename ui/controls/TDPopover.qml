// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tindra.Theme

/** Floats under its parent, children in a column. Escape and a press outside close it. */
T.Popup {
    id: popover

    default property alias content: column.data
    /** The accessible name. */
    property string label

    y: parent ? parent.height + 6 : 0
    padding: TD.l
    margins: 8
    focus: true
    width: 260
    implicitHeight: contentHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    contentItem: ColumnLayout {
        id: column
        spacing: TD.m
    }
    background: TDFloatingGround {
        Accessible.role: Accessible.Dialog
        Accessible.name: popover.label
    }
    readonly property FocusReturn focusReturn: FocusReturn {}
    onAboutToShow: focusReturn.remember(parent)
    onClosed: focusReturn.giveBack()
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: TD.quick } }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: TD.quick } }
}
