// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme

/** One line across the window that concerns all pages. */
Rectangle {
    id: line

    property alias text: label.text
    property alias symbol: icon.name
    property color ink: TD.text
    property bool dismissable: false
    signal dismissed

    implicitHeight: Math.max(row.implicitHeight + 2 * (dismissable ? TD.xs : TD.s), 2 * TD.s + 16)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    RowLayout {
        id: row
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; leftMargin: TD.xl; rightMargin: TD.xl }
        spacing: TD.s
        TDIcon { id: icon; color: line.ink; size: 16 }
        TDLabel {
            id: label
            Layout.fillWidth: true
            color: line.ink
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        TDIconButton {
            objectName: "dismissNotice"
            visible: line.dismissable
            symbol: "xmark"
            label: "Skjul meldingen"
            color: line.ink
            onClicked: line.dismissed()
        }
    }
}
