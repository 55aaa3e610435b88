// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** Says what is wrong with the windows, and offers another in their place. */
Rectangle {
    id: warning

    required property BoardingPassSearchCardModel form
    /** The offer was taken. */
    signal done()

    implicitHeight: column.implicitHeight + 2 * TD.m
    radius: TD.controlRadius
    color: TD.tint(TD.warn, 0.1)
    border { color: TD.tint(TD.warn, 0.45); width: 1 }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: message.text

    Column {
        id: column
        anchors { fill: parent; margins: TD.m }
        spacing: TD.s
        TDLabel {
            id: message
            width: parent.width
            text: warning.form.warningText
            color: TD.badgeText(TD.warn, false)
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        TDButton {
            text: warning.form.offerText
            enabled: warning.form.canSearch
            onClicked: {
                warning.form.takeOffer();
                warning.done();
            }
        }
    }
}
