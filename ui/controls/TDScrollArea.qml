// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** What scrolls up and down; whatever the keyboard reaches in it comes into view. */
Flickable {
    id: area

    readonly property real lowest: Math.max(0, contentHeight - height)
    readonly property Item focused: Window.activeFocusItem

    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    T.ScrollBar.vertical: TDScrollBar {}

    function scrollTo(top: real) {
        contentY = Math.max(0, Math.min(lowest, top));
    }
    /** Scrolls as little as it takes to show `item`. */
    function reveal(item: Item) {
        const top = item.mapToItem(contentItem, 0, 0).y - TD.l;
        const bottom = top + item.height + 2 * TD.l;
        if (top < contentY)
            scrollTo(top);
        else if (bottom > contentY + height)
            scrollTo(bottom - height);
    }
    // Where there is less than before, it does not hang in the void.
    onLowestChanged: if (contentY > lowest) scrollTo(lowest)
    onFocusedChanged: {
        for (let item = focused?.parent ?? null; item; item = item.parent) {
            if (item === contentItem) {
                reveal(focused);
                return;
            }
        }
    }
}
