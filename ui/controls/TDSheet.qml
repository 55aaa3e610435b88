// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tindra.Theme

/** A larger modal: a title, a scrolling column of children, and a row of `buttons`. */
TDModal {
    id: sheet

    default property alias content: column.data
    property alias buttons: footer.data
    property int sheetWidth: 560

    width: Math.min(sheetWidth, parent ? parent.width - 48 : sheetWidth)
    height: Math.min(implicitHeight, parent ? parent.height - 48 : implicitHeight)
    implicitHeight: heading.implicitHeight + column.implicitHeight + footer.implicitHeight
                    + 2 * TD.l + topPadding + bottomPadding

    contentItem: ColumnLayout {
        spacing: TD.l
        TDLabel {
            id: heading
            Layout.fillWidth: true
            text: sheet.title
            elide: Text.ElideRight
            font { pixelSize: TD.cardTitle; bold: true }
            Accessible.role: Accessible.Heading
        }
        Flickable {
            id: flick
            Layout.fillWidth: true
            Layout.fillHeight: true
            // Room for the focus rings of what lies at the edges.
            Layout.leftMargin: -4
            Layout.rightMargin: -4
            contentWidth: width
            contentHeight: column.height
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: TDScrollBar {}
            ColumnLayout {
                id: column
                x: 4
                width: flick.width - 8
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
