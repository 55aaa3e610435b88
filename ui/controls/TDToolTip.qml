// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A tool tip over its parent; say in `shown` when it is wanted. */
T.ToolTip {
    id: tip

    property bool shown: false

    visible: shown && text !== "" && ripe
    property bool ripe: false
    readonly property Timer wait: Timer {
        interval: 600
        running: tip.shown
        onTriggered: tip.ripe = true
    }
    onShownChanged: if (!shown) ripe = false

    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: -implicitHeight - 6
    margins: 6
    padding: 8
    implicitWidth: Math.min(contentItem.implicitWidth, 280) + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Text {
        text: tip.text
        color: TD.card
        wrapMode: Text.Wrap
        font { family: TD.fontFamily; pixelSize: TD.caption }
        textFormat: Text.PlainText
    }
    background: Rectangle { color: TD.text; radius: 6 }
}
