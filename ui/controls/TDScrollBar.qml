// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A slim scroll bar. */
T.ScrollBar {
    id: bar

    implicitWidth: vertical ? 10 : 0
    implicitHeight: vertical ? 0 : 10
    padding: 2
    minimumSize: 0.06
    visible: policy === T.ScrollBar.AlwaysOn || (policy === T.ScrollBar.AsNeeded && size < 1)
    contentItem: Rectangle {
        radius: 3
        implicitWidth: 6
        implicitHeight: 6
        color: TD.tint(TD.text, bar.pressed ? 0.5 : bar.hovered ? 0.38 : 0.22)
    }
}
