// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme

/** A month that shows a window of days; all of it is `calendar`'s, a `MonthCalendar`. */
FocusScope {
    id: view

    required property MonthCalendar calendar

    implicitWidth: 7 * 34
    implicitHeight: column.implicitHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.Table
    Accessible.name: calendar.title + ". " + calendar.cursorText
    Accessible.focusable: true
    Keys.onLeftPressed: calendar.moveCursor(-1)
    Keys.onRightPressed: calendar.moveCursor(1)
    Keys.onUpPressed: calendar.moveCursor(-7)
    Keys.onDownPressed: calendar.moveCursor(7)
    Keys.onReturnPressed: calendar.pickCursor()
    Keys.onEnterPressed: calendar.pickCursor()
    Keys.onSpacePressed: calendar.pickCursor()
    Keys.onPressed: event => {
        if (event.key !== Qt.Key_PageUp && event.key !== Qt.Key_PageDown)
            return;
        calendar.showMonth(event.key === Qt.Key_PageUp ? -1 : 1);
        event.accepted = true;
    }

    Column {
        id: column
        width: parent.width
        spacing: TD.xs
        RowLayout {
            width: parent.width
            TDLabel {
                Layout.fillWidth: true
                Layout.leftMargin: TD.s
                text: view.calendar.title
                font { pixelSize: TD.section; weight: Font.DemiBold }
            }
            TDIconButton {
                label: "Forrige måned"
                symbol: "chevron.left"
                enabled: view.calendar.hasPrevious
                onClicked: view.calendar.showMonth(-1)
            }
            TDIconButton {
                label: "Neste måned"
                symbol: "chevron.right"
                onClicked: view.calendar.showMonth(1)
            }
        }
        Row {
            Repeater {
                model: view.calendar.weekdays
                TDLabel {
                    required property string modelData
                    width: view.width / 7
                    horizontalAlignment: Text.AlignHCenter
                    text: modelData
                    color: TD.textTertiary
                    font.pixelSize: TD.caption
                }
            }
        }
        Grid {
            columns: 7
            Repeater {
                model: view.calendar
                Item {
                    id: cell
                    required property int index
                    required property int day
                    required property string name
                    required property bool inMonth
                    required property bool pickable
                    required property bool isStart
                    required property bool isEnd
                    required property bool inWindow
                    required property bool isToday
                    required property bool isCursor
                    readonly property bool marked: isStart || isEnd

                    width: view.width / 7
                    height: 32
                    Accessible.role: Accessible.Cell
                    Accessible.name: name
                    Accessible.selected: inWindow
                    Accessible.onPressAction: view.calendar.pick(index)

                    Rectangle {
                        visible: cell.inWindow && !(cell.isStart && cell.isEnd)
                        x: cell.isStart ? parent.width / 2 : 0
                        y: 2
                        width: parent.width - x - (cell.isEnd ? parent.width / 2 : 0)
                        height: 28
                        color: TD.tint(TD.accent, 0.14)
                    }
                    Rectangle {
                        anchors.centerIn: parent
                        width: 28
                        height: 28
                        radius: 14
                        color: cell.marked ? TD.brand : hover.hovered && cell.pickable ? TD.tint(TD.text, 0.08) : "transparent"
                        border { color: TD.accent; width: cell.isToday && !cell.marked ? 1 : 0 }
                    }
                    Rectangle {
                        visible: cell.isCursor && view.activeFocus
                        anchors.centerIn: parent
                        width: 32
                        height: 32
                        radius: 16
                        color: "transparent"
                        border { color: TD.accent; width: 2 }
                    }
                    TDLabel {
                        anchors.centerIn: parent
                        text: cell.day
                        color: cell.marked ? TD.onBrand : cell.inMonth && cell.pickable ? TD.text : TD.textTertiary
                        font.weight: cell.marked ? Font.DemiBold : Font.Normal
                        opacity: cell.pickable || cell.marked ? 1 : 0.45
                        Accessible.ignored: true
                    }
                    HoverHandler { id: hover }
                    TapHandler { enabled: cell.pickable; onTapped: view.calendar.pick(cell.index) }
                }
            }
        }
    }
}
