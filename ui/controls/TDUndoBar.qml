// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Theme

/** Says at the bottom of the page what was done, with "Angre" for as long as that is possible. */
Rectangle {
    id: bar

    property string text
    /** False for news that cannot be undone. */
    property bool undoable: true
    /** How long it stays, in milliseconds; it stays longer while it is pointed at or focused. */
    property int timeout: 8000
    signal undone
    /** It is too late to undo. */
    signal expired

    function show(words: string) {
        text = words;
        opacity = 1;
        visible = true;
        timer.restart();
    }
    function dismiss() {
        timer.stop();
        if (undo.activeFocus)
            undo.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason);
        visible = false;
    }

    anchors { bottom: parent ? parent.bottom : undefined; horizontalCenter: parent ? parent.horizontalCenter : undefined; bottomMargin: TD.xl }
    visible: false
    width: Math.min(row.implicitWidth + 32, parent ? parent.width - 48 : 400)
    height: 46
    radius: TD.cardRadius
    color: TD.raised
    border { color: TD.dark ? "#3A434E" : TD.raised; width: 1 }
    z: 10
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    HoverHandler { id: hover }
    Timer {
        id: timer
        interval: bar.timeout
        running: false
        repeat: true
        onTriggered: {
            if (hover.hovered || undo.activeFocus)
                return;
            bar.dismiss();
            bar.expired();
        }
    }
    RowLayout {
        id: row
        anchors { fill: parent; leftMargin: TD.l; rightMargin: TD.s }
        spacing: TD.l
        TDLabel {
            text: bar.text
            color: TD.panelText
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        TDButton {
            id: undo
            visible: bar.undoable
            kind: "plain"
            text: "Angre"
            focusPolicy: Qt.TabFocus
            ink: TD.peach
            leftPadding: 10
            onClicked: {
                bar.dismiss();
                bar.undone();
            }
        }
    }
    TDShadow { radius: bar.radius; depth: 6 }
}
