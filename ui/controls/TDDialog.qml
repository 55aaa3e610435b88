// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Theme

/**
 * A question: title, message, optional content, and buttons. Escape is `cancelText`. Without an
 * `actionText` there is nothing to accept.
 * `accepted` is emitted by the action, `rejected` by everything else; both after it has closed.
 */
TDModal {
    id: dialog

    default property alias extra: slot.data
    property string message
    property string actionText
    property string cancelText: "Avbryt"
    property bool destructive: false
    property bool actionEnabled: true
    /** Where the keyboard begins, when not at the way out. */
    property Item initialFocus
    signal accepted
    signal rejected

    property bool agreed: false
    function accept() {
        if (!actionEnabled || actionText === "")
            return;
        agreed = true;
        close();
    }
    onAboutToShow: agreed = false
    onClosed: agreed ? accepted() : rejected()
    onOpened: {
        if (initialFocus)
            initialFocus.forceActiveFocus(Qt.TabFocusReason);
        else
            cancel.forceActiveFocus(Qt.TabFocusReason);
    }

    width: Math.min(400, parent ? parent.width - 48 : 400)

    contentItem: ColumnLayout {
        spacing: TD.s
        Keys.onReturnPressed: dialog.accept()
        Keys.onEnterPressed: dialog.accept()
        TDLabel {
            Layout.fillWidth: true
            text: dialog.title
            wrapMode: Text.Wrap
            font { pixelSize: TD.cardTitle; bold: true }
            Accessible.role: Accessible.Heading
        }
        TDLabel {
            Layout.fillWidth: true
            visible: text !== ""
            text: dialog.message
            color: TD.textSecondary
            wrapMode: Text.Wrap
            lineHeight: 1.2
        }
        ColumnLayout {
            id: slot
            Layout.fillWidth: true
            Layout.topMargin: children.length > 0 ? TD.s : 0
        }
        RowLayout {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: TD.m
            spacing: TD.s
            TDButton {
                id: cancel
                text: dialog.cancelText
                onClicked: dialog.close()
            }
            TDButton {
                visible: text !== ""
                text: dialog.actionText
                kind: dialog.destructive ? "destructive" : "filled"
                enabled: dialog.actionEnabled
                onClicked: dialog.accept()
            }
        }
    }
}
