// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Theme

/** A whole number between `from` and `to`; `picked` says what the user chose, to be taken up at once. */
FocusScope {
    id: stepper

    /** The text with the number in it, such as "Min. seter: 2". */
    property string text
    property int from: 0
    property int to: 9
    property int value: 0
    signal picked(int value)

    implicitWidth: row.implicitWidth
    implicitHeight: 30
    activeFocusOnTab: true
    Accessible.role: Accessible.SpinBox
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)
    Keys.onUpPressed: step(1)
    Keys.onDownPressed: step(-1)
    Keys.onRightPressed: step(1)
    Keys.onLeftPressed: step(-1)

    function step(by: int) {
        const next = Math.max(from, Math.min(to, value + by));
        if (next === value)
            return;
        picked(next);
        // Writing it here would cut a binding that has just brought it.
        if (value !== next)
            value = next;
    }

    RowLayout {
        id: row
        anchors.fill: parent
        spacing: TD.s
        TDLabel {
            text: stepper.text
            Layout.fillWidth: true
            Accessible.ignored: true
        }
        Item {
            implicitWidth: 64
            implicitHeight: 30
            Rectangle {
                anchors.fill: parent
                radius: TD.controlRadius
                color: TD.field
                border { color: TD.hairline; width: 1 }
                Rectangle {
                    anchors.centerIn: parent
                    width: 1
                    height: 16
                    color: TD.hairline
                }
                TDFocusRing {
                    property bool visualFocus: stepper.activeFocus
                    target: this
                }
            }
            Row {
                anchors.fill: parent
                TDIconButton {
                    label: "Færre"
                    symbol: "minus"
                    size: 30
                    width: 32
                    focusPolicy: Qt.NoFocus
                    enabled: stepper.value > stepper.from
                    onClicked: stepper.step(-1)
                }
                TDIconButton {
                    label: "Flere"
                    symbol: "plus"
                    size: 30
                    width: 32
                    focusPolicy: Qt.NoFocus
                    enabled: stepper.value < stepper.to
                    onClicked: stepper.step(1)
                }
            }
        }
    }
}
