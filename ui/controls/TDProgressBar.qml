// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** How far something is, `value` from 0 to 1, or with `indeterminate` only that it goes on. */
T.ProgressBar {
    id: bar

    required property string label

    implicitWidth: 200
    implicitHeight: 4
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label

    background: Rectangle { radius: 2; color: TD.hairline }
    contentItem: Item {
        clip: true
        Rectangle {
            id: done
            x: bar.indeterminate ? sweep.at * (parent.width + width) - width : 0
            width: parent.width * (bar.indeterminate ? 0.3 : bar.visualPosition)
            height: parent.height
            radius: 2
            color: TD.accent
            // Without motion, a bar that cannot tell stands still in the middle.
            QtObject {
                id: sweep
                property real at: 0.5
                property NumberAnimation run: NumberAnimation {
                    target: sweep
                    property: "at"
                    from: 0
                    to: 1
                    duration: 1400
                    loops: Animation.Infinite
                    running: bar.indeterminate && bar.visible && !TD.reduceMotion
                }
            }
        }
    }
}
