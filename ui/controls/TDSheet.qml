// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Theme

/** A larger modal: a title, a scrolling column of children, and a row of `buttons`. */
TDModal {
    id: sheet

    default property alias content: column.data
    property alias buttons: footer.data
    property int sheetWidth: 560
    /** Return was pressed, and no button had the focus. */
    signal submitted

    width: Math.min(sheetWidth, parent ? parent.width - 48 : sheetWidth)
    height: Math.min(implicitHeight, parent ? parent.height - 48 : implicitHeight)
    implicitHeight: heading.implicitHeight + column.implicitHeight + footer.implicitHeight
                    + 2 * TD.l + topPadding + bottomPadding

    contentItem: ColumnLayout {
        spacing: TD.l
        Keys.onReturnPressed: sheet.submitted()
        Keys.onEnterPressed: sheet.submitted()
        TDLabel {
            id: heading
            Layout.fillWidth: true
            text: sheet.title
            elide: Text.ElideRight
            font { pixelSize: TD.cardTitle; bold: true }
            Accessible.role: Accessible.Heading
        }
        TDScrollArea {
            id: flick
            Layout.fillWidth: true
            Layout.fillHeight: true
            // Room for focus rings on the left and the scroll bar on the right.
            Layout.leftMargin: -4
            Layout.rightMargin: -18
            contentHeight: column.height
            ColumnLayout {
                id: column
                x: 4
                width: flick.width - 22
                spacing: TD.m
            }
        }
        RowLayout {
            id: footer
            Layout.alignment: Qt.AlignRight
            spacing: TD.s
        }
    }
}
