// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A capsule to press, or with `checkable` to choose; a chosen one shows a check mark. */
T.Button {
    id: chip

    property bool checkmark: checkable
    property string symbol

    readonly property string shownSymbol: checked && checkmark ? "checkmark" : symbol

    implicitWidth: contentItem.implicitWidth + 24
    implicitHeight: 32
    font { family: TD.fontFamily; pixelSize: TD.body; weight: Font.Medium }
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    Accessible.role: checkable ? Accessible.CheckBox : Accessible.Button
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: checked
    // Return on a choice is for the form it stands in.
    Keys.onReturnPressed: event => activate(event)
    Keys.onEnterPressed: event => activate(event)
    function activate(event) {
        event.accepted = !checkable;
        if (!checkable)
            clicked();
    }
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    contentItem: TDChipLabel { button: chip; symbol: chip.shownSymbol }
    background: TDChipGround { button: chip }
}
