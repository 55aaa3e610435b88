// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme

/** A heading and a panel of rows. */
Column {
    id: section

    required property string title
    default property alias rows: body.data

    width: parent.width
    spacing: TD.s
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    TDSectionTitle {
        small: true
        leftPadding: TD.xs
        text: section.title
    }
    TDCard {
        width: parent.width
        padding: 0
        Column {
            id: body
            width: parent.width
        }
    }
}
