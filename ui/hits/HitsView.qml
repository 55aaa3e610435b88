// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Qt.labs.qmlmodels
import Tindra.Controls
import Tindra.Theme
import Tindra.Hits

/** The page "Treff". */
FocusScope {
    id: view

    required property HitsPage page

    Accessible.role: Accessible.Pane
    Accessible.name: "Treff"

    Binding { view.page.shown: view.visible }
    Binding { view.page.columns: head.width < 700 ? 1 : head.width < 1200 ? 2 : 3 }

    Rectangle {
        anchors.fill: parent
        color: TD.window
    }
    Column {
        id: head
        x: list.inset
        y: TD.xl
        width: view.width - 2 * list.inset
        spacing: TD.l
        TDLabel {
            text: "Treff"
            font { pixelSize: TD.pageTitle; bold: true }
            Accessible.role: Accessible.Heading
        }
        FilterBar {
            width: parent.width
            page: view.page
        }
    }
    TDEmptyState {
        visible: view.page.emptyText !== ""
        anchors { top: head.bottom; topMargin: TD.xl }
        x: list.inset
        width: head.width
        symbol: "sparkles"
        text: view.page.emptyText
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; top: list.top }
        height: 1
        z: 1
        color: TD.hairline
        visible: list.contentY > list.originY
    }

    Connections {
        target: view.page
        function onRevealed(row) {
            // The rows have to find their places first.
            list.forceLayout();
            list.currentIndex = view.page.nextStop(row - 1, 1);
            list.positionViewAtIndex(row, ListView.Center);
        }
    }
    ListView {
        id: list
        objectName: "list"

        readonly property real inset: Math.max(TD.xl, (width - 1320) / 2)
        /** The keyboard was used last, so that the row with the focus is marked. */
        property bool byKeyboard: false
        property bool wasLeft: false
        property string toggled

        /** The rows whose buttons Tab reaches: the current one, below an open header also the next. */
        function isTabStop(row: int): bool {
            return row === currentIndex || (row > currentIndex && row <= currentIndex + 2
                                            && currentItem?.isOpen === true);
        }
        /** The first row that is whole, so that nothing moves when it becomes the current one. */
        function firstInView(): int {
            const row = Math.max(0, indexAt(width / 2, contentY + 1));
            return (itemAtIndex(row)?.y ?? 0) < contentY ? row + 1 : row;
        }
        /** Makes a row the current one and takes the focus to it, also from a button in another. */
        function moveTo(row: int) {
            byKeyboard = true;
            currentIndex = row;
            currentItem?.forceActiveFocus(Qt.TabFocusReason);
        }
        function go(step: int) {
            moveTo(view.page.nextStop(currentIndex, step));
        }
        function goPages(pages: int) {
            const step = pages < 0 ? -1 : 1;
            const from = currentItem?.y ?? 0;
            for (let row = currentIndex; ; ) {
                const next = view.page.nextStop(row, step);
                if (next === row)
                    return;
                moveTo(row = next);
                if (Math.abs(currentItem.y - from) > Math.abs(pages) * height * 0.8)
                    return;
            }
        }
        function toggle(row: int, journey: string) {
            toggled = journey;
            currentIndex = row;
            view.page.toggle(journey);
        }
        function use() {
            if (currentItem?.journey !== undefined && currentItem.isOpen !== undefined)
                toggle(currentIndex, currentItem.journey);
            else if (currentItem?.enter !== undefined)
                currentItem.enter();
        }

        anchors { fill: parent; topMargin: head.y + head.height + TD.s }
        clip: true
        focus: true
        activeFocusOnTab: true
        keyNavigationEnabled: false
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        cacheBuffer: 240
        topMargin: TD.xs
        bottomMargin: TD.xl
        highlightMoveDuration: 0
        model: view.page.rows
        currentIndex: -1
        Accessible.role: Accessible.List
        Accessible.name: "Reiser"
        T.ScrollBar.vertical: TDScrollBar {}

        onActiveFocusChanged: {
            if (!activeFocus) {
                wasLeft = wasLeft || Window.active;
                return;
            }
            // The page has the focus when it opens; then nobody has walked to a row yet.
            byKeyboard = wasLeft;
            if (currentIndex < 0)
                currentIndex = view.page.nextStop(firstInView() - 1, 1);
        }
        Keys.onPressed: event => {
            switch (event.key) {
            case Qt.Key_Down: go(1); break;
            case Qt.Key_Up: go(-1); break;
            case Qt.Key_PageDown: goPages(1); break;
            case Qt.Key_PageUp: goPages(-1); break;
            case Qt.Key_Home: moveTo(view.page.nextStop(-1, 1)); break;
            case Qt.Key_End: moveTo(view.page.nextStop(count, -1)); break;
            case Qt.Key_Return:
            case Qt.Key_Enter:
            case Qt.Key_Space: use(); break;
            case Qt.Key_Right: if (currentItem?.isOpen === false) use(); break;
            case Qt.Key_Left: if (currentItem?.isOpen === true) use(); break;
            default: return;
            }
            event.accepted = true;
        }

        // A row that waits to be used again is not there, also not for a screen reader.
        delegate: DelegateChooser {
            role: "kind"
            DelegateChoice {
                roleValue: "region"
                TDLabel {
                    ListView.onPooled: visible = false
                    ListView.onReused: visible = true
                    required property string title
                    width: list.width
                    leftPadding: list.inset
                    topPadding: TD.m
                    bottomPadding: TD.m
                    text: title
                    font { weight: Font.DemiBold }
                    Accessible.role: Accessible.Heading
                }
            }
            DelegateChoice {
                roleValue: "journey"
                JourneySection {
                    ListView.onPooled: visible = false
                    ListView.onReused: visible = true
                    required property int index
                    required property string journey
                    objectName: "journey"
                    width: list.width
                    inset: list.inset
                    isCurrent: activeFocus && list.byKeyboard
                    animated: list.toggled === journey
                    onClicked: {
                        list.forceActiveFocus(Qt.MouseFocusReason);
                        list.byKeyboard = false;
                        list.toggle(index, journey);
                    }
                }
            }
            DelegateChoice {
                roleValue: "direction"
                DirectionHeading {
                    ListView.onPooled: visible = false
                    ListView.onReused: visible = true
                    required property int index
                    required property string journey
                    required property bool isOpen
                    isExportable: isOpen
                    width: list.width
                    inset: list.inset
                    isTabStop: list.isTabStop(index)
                    onExported: view.page.exportJourney(journey)
                }
            }
            DelegateChoice {
                roleValue: "cards"
                CardRow {
                    ListView.onPooled: visible = false
                    ListView.onReused: visible = true
                    required property int index
                    width: list.width
                    inset: list.inset
                    columns: view.page.columns
                    isCurrent: activeFocus && list.byKeyboard
                    isTabStop: list.isTabStop(index)
                    onBooked: column => view.page.book(index, column)
                    onCopied: column => view.page.copy(index, column)
                }
            }
        }
    }

    TDDialog {
        id: confirmation
        title: "Slette alle treff?"
        message: "Fjerner alle kortene fra listen. Overvåkerne beholdes, og nye treff varsles som før."
        actionText: "Slett alle treff"
        destructive: true
        onAccepted: view.page.clearAll()
        onRejected: view.page.confirmClear = false
    }
    TDUndoBar {
        id: notice
        undoable: view.page.canUndo
        onUndone: view.page.undoClear()
        onExpired: view.page.dismissNotice()
    }
    Connections {
        target: view.page
        function onConfirmClearChanged() {
            if (view.page.confirmClear)
                confirmation.open();
        }
        function onNoticeChanged() {
            if (view.page.notice === "")
                notice.dismiss();
            else
                notice.show(view.page.notice);
        }
    }
}
