// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** The search form on a page like the one it is for. */
Item {
    id: frame

    required property BoardingPassSearchCardModel form

    Rectangle {
        width: 220
        height: parent.height
        color: TD.sidebar
    }
    TDScrollPage {
        id: page
        x: 220
        width: parent.width - x
        height: parent.height
        title: "Dashboard"
        BoardingPassSearchCard {
            width: parent.width
            form: frame.form
            onReveal: item => page.reveal(item)
        }
        TDCard {
            width: parent.width
            TDLabel { text: "Overvåkere" }
        }
    }
}
