// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** The two ends of a window, to type or to pick in the month below. */
TDPopover {
    id: picker

    required property DateWindowFieldModel field

    label: field.title
    width: 240
    padding: TD.m
    // Seven whole columns in what is left.
    rightPadding: 11
    visible: field.open
    onClosed: field.open = false
    onOpened: month.forceActiveFocus()

    /** One end, as a date to type. What cannot be used is said below and put back. */
    component End: Column {
        id: end

        required property string label
        required property string shown
        required property int which
        signal typed(string text)

        readonly property bool isNext: picker.field.calendar.picks === which

        width: (picker.availableWidth - TD.s) / 2
        spacing: TD.xs

        TDLabel {
            text: end.label
            color: end.isNext ? TD.accent : TD.textSecondary
            font { pixelSize: TD.caption; weight: Font.DemiBold }
            Accessible.ignored: true
        }
        TDTextField {
            objectName: end.label + "Input"
            width: parent.width
            leftPadding: TD.s
            text: end.shown
            inputMethodHints: Qt.ImhDate
            Accessible.name: end.label
            onActiveFocusChanged: {
                if (activeFocus) {
                    picker.field.calendar.picks = end.which;
                    // A press of the mouse sets the caret after it has given the focus.
                    Qt.callLater(selectAll);
                }
            }
            onEditingFinished: {
                end.typed(text);
                text = Qt.binding(() => end.shown);
            }
            Rectangle {
                visible: end.isNext && !parent.activeFocus
                anchors.fill: parent
                radius: TD.controlRadius
                color: "transparent"
                border { color: TD.accent; width: 1 }
            }
        }
    }

    Row {
        spacing: TD.s
        End {
            label: "Fra"
            shown: picker.field.fromText
            which: 0
            onTyped: text => picker.field.typeFrom(text)
        }
        End {
            label: "Til"
            shown: picker.field.toText
            which: 1
            onTyped: text => picker.field.typeTo(text)
        }
    }
    TDLabel {
        visible: text !== ""
        Layout.fillWidth: true
        text: picker.field.problem
        color: TD.danger
        wrapMode: Text.Wrap
        font.pixelSize: TD.caption
        Accessible.role: Accessible.AlertMessage
    }
    TDMonthCalendar {
        id: month
        Layout.fillWidth: true
        calendar: picker.field.calendar
    }
}
