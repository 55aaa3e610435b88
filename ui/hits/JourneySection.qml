// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Theme

/** The header of a journey, a button that opens and closes it. */
T.AbstractButton {
    id: section

    required property string title
    required property int count
    required property string soldOut
    required property string cheapest
    required property string dates
    required property bool isOpen
    property real inset: 0
    property bool isCurrent: false
    /** Turn the arrow visibly, since it is this journey that was just opened or closed. */
    property bool animated: false

    readonly property string countText: count + " treff"

    implicitHeight: 48 + (isOpen ? 0 : TD.m)
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: title + ", " + countText + (soldOut === "" ? "" : ", " + soldOut)
                     + (cheapest === "" ? "" : ", " + cheapest) + (dates === "" ? "" : ", " + dates)
    Accessible.description: isOpen ? "Åpen" : "Lukket"
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    JourneyGround {
        x: section.inset
        width: section.width - 2 * section.inset
        height: 48
        isTop: true
        isBottom: !section.isOpen

        Rectangle {
            anchors { fill: parent; margins: 1 }
            radius: TD.cardRadius - 1
            color: TD.text
            opacity: section.down ? 0.07 : section.hovered ? 0.03 : 0
        }
        TDIcon {
            x: TD.l
            anchors.verticalCenter: parent.verticalCenter
            name: "chevron.right"
            size: 16
            color: TD.textSecondary
            rotation: section.isOpen ? 90 : 0
            Behavior on rotation {
                enabled: section.animated
                NumberAnimation { duration: TD.quick }
            }
        }
        TDLabel {
            anchors { left: parent.left; leftMargin: 44; right: figures.left; rightMargin: TD.m; verticalCenter: parent.verticalCenter }
            text: section.title
            font { pixelSize: 15; weight: Font.Bold }
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            Accessible.ignored: true
        }
        Row {
            id: figures
            anchors { right: parent.right; rightMargin: TD.l; verticalCenter: parent.verticalCenter }
            spacing: TD.m
            TDLabel {
                text: section.countText
                color: section.count > 0 ? TD.success : TD.textSecondary
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            TDLabel {
                visible: text !== ""
                text: section.soldOut
                color: TD.danger
                Accessible.ignored: true
            }
            TDLabel {
                visible: text !== ""
                text: section.cheapest
                color: TD.accent
                Accessible.ignored: true
            }
            TDLabel {
                visible: text !== ""
                width: Math.min(implicitWidth, 120)
                text: section.dates
                color: TD.textSecondary
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
        Rectangle {
            anchors.fill: parent
            visible: section.isCurrent
            color: "transparent"
            radius: TD.cardRadius
            border { color: TD.accent; width: 2 }
        }
    }
}
