// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
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
        flick.reveal(item);
    }
    function scrollBy(distance: real) {
        flick.scrollTo(flick.contentY + distance);
    }
    Keys.onUpPressed: scrollBy(-48)
    Keys.onDownPressed: scrollBy(48)
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_PageUp: scrollBy(48 - flick.height); break;
        case Qt.Key_PageDown: scrollBy(flick.height - 48); break;
        case Qt.Key_Home: flick.scrollTo(0); break;
        case Qt.Key_End: flick.scrollTo(flick.lowest); break;
        default: return;
        }
        event.accepted = true;
    }

    TDScrollArea {
        id: flick
        anchors.fill: parent
        contentHeight: column.height + 2 * page.padding

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
