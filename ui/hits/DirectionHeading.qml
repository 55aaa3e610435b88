// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Theme

/** "UTREISE" or "HJEMREISE" with the number of its cards; the first of a journey also exports it. */
Item {
    id: heading

    required property string title
    required property int count
    required property bool isExportable
    property real inset: 0
    property bool isTabStop: false
    signal exported

    implicitHeight: 32
    Accessible.role: Accessible.Heading
    Accessible.name: title + " " + count

    JourneyGround {
        x: heading.inset
        width: heading.width - 2 * heading.inset
        height: parent.height

        Row {
            x: TD.l
            anchors { bottom: parent.bottom; bottomMargin: TD.s + 1 }
            spacing: TD.xs
            TDSectionTitle {
                small: true
                text: heading.title
                Accessible.ignored: true
            }
            TDLabel {
                text: heading.count
                color: TD.textSecondary
                font.pixelSize: TD.badge
                Accessible.ignored: true
            }
        }
        TDButton {
            objectName: "exportJourney"
            visible: heading.isExportable
            anchors { right: parent.right; rightMargin: TD.m; verticalCenter: parent.verticalCenter }
            implicitHeight: TD.target
            kind: "plain"
            symbol: "calendar"
            text: "Til kalenderen"
            activeFocusOnTab: heading.isTabStop
            onClicked: heading.exported()
        }
    }
}
