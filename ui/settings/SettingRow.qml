// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Theme

/** A title, with a line beneath that may be empty, and a control at the trailing edge. */
Item {
    id: row

    required property string title
    property string note
    property color noteColor: TD.textSecondary
    /** The first row of a panel has no line over it. */
    property bool first: false
    default property alias control: place.data

    width: parent.width
    implicitHeight: Math.max(60, layout.implicitHeight + 2 * TD.m)

    Rectangle {
        visible: !row.first
        width: parent.width
        height: 1
        color: TD.hairline
    }
    RowLayout {
        id: layout
        anchors { left: parent.left; right: parent.right; margins: TD.l; verticalCenter: parent.verticalCenter }
        spacing: TD.xl
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            TDLabel {
                Layout.fillWidth: true
                text: row.title
                wrapMode: Text.Wrap
                font.weight: Font.Medium
            }
            TDLabel {
                visible: text !== ""
                Layout.fillWidth: true
                Layout.maximumWidth: 440
                text: row.note
                wrapMode: Text.Wrap
                color: row.noteColor
                font.pixelSize: TD.caption
            }
        }
        RowLayout {
            id: place
            Layout.fillWidth: false
        }
    }
}
