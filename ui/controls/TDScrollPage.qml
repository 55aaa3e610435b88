// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tindra.Theme

/** A scrolling page: children stand under each other in a column of at most `contentMaxWidth`. */
FocusScope {
    id: page

    default property alias content: column.data
    property alias contentY: flick.contentY
    property alias contentHeight: flick.contentHeight
    property int contentMaxWidth: 1000
    property int padding: TD.xl
    property alias spacing: column.spacing
    /** The page's heading; empty for none. */
    property string title
    /** What stands beside the title, at the right. */
    property alias actions: actionRow.data

    Accessible.role: Accessible.Pane
    Accessible.name: title

    /** Scrolls as little as it takes to show `item`. */
    function reveal(item: Item) {
        const top = item.mapToItem(flick.contentItem, 0, 0).y - TD.l;
        const bottom = top + item.height + 2 * TD.l;
        if (top < flick.contentY)
            flick.contentY = Math.max(0, top);
        else if (bottom > flick.contentY + flick.height)
            flick.contentY = Math.min(Math.max(0, flick.contentHeight - flick.height), bottom - flick.height);
    }
    function scrollBy(distance: real) {
        flick.contentY = Math.max(0, Math.min(flick.contentHeight - flick.height, flick.contentY + distance));
    }
    Keys.onUpPressed: scrollBy(-48)
    Keys.onDownPressed: scrollBy(48)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
            scrollBy((event.key === Qt.Key_PageUp ? -1 : 1) * (flick.height - 48));
        else if (event.key === Qt.Key_Home || event.key === Qt.Key_End)
            scrollBy(event.key === Qt.Key_Home ? -flick.contentHeight : flick.contentHeight);
        else
            return;
        event.accepted = true;
    }

    // What the keyboard reaches comes into view.
    readonly property Item focused: Window.activeFocusItem
    onFocusedChanged: {
        for (let item = focused; item; item = item.parent) {
            if (item === column) {
                reveal(focused);
                return;
            }
        }
    }

    Flickable {
        id: flick
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.height + 2 * page.padding
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: TDScrollBar {}

        Column {
            id: column
            x: Math.max(page.padding, (flick.width - width) / 2)
            y: page.padding
            width: Math.min(page.contentMaxWidth, flick.width - 2 * page.padding)
            spacing: TD.l
            RowLayout {
                visible: page.title !== ""
                width: parent.width
                TDLabel {
                    Layout.fillWidth: true
                    text: page.title
                    elide: Text.ElideRight
                    font { pixelSize: TD.pageTitle; bold: true }
                    Accessible.role: Accessible.Heading
                }
                RowLayout {
                    id: actionRow
                    spacing: TD.m
                }
            }
        }
    }
}
