// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Theme

/** A menu of what can be done with a card. */
T.Menu {
    id: menu

    implicitWidth: 200
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: TD.xs
    margins: TD.s
    delegate: CardMenuItem {}
    background: TDFloatingGround {}
    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        currentIndex: menu.currentIndex
        interactive: false
    }
    readonly property FocusReturn focusReturn: FocusReturn {}
    onAboutToShow: focusReturn.remember(parent)
    onOpened: currentIndex = 0
    onClosed: focusReturn.giveBack()
}
