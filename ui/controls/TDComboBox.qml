// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A choice from a list that opens. `label` is the accessible name. */
T.ComboBox {
    id: combo

    required property string label

    implicitWidth: Math.max(120, implicitContentWidthPolicy === T.ComboBox.ContentItemImplicitWidth
                                 ? implicitContentWidth + leftPadding + rightPadding : 0)
    implicitHeight: TD.controlHeight
    implicitContentWidthPolicy: T.ComboBox.WidestText
    leftPadding: 12
    rightPadding: 34
    font { family: TD.fontFamily; pixelSize: TD.body; weight: Font.Medium }
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    Accessible.role: Accessible.ComboBox
    Accessible.name: label
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    contentItem: Text {
        text: combo.displayText
        font: combo.font
        color: TD.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
    indicator: TDIcon {
        x: combo.width - width - 12
        y: (combo.height - height) / 2
        name: "chevron.down"
        size: 14
        color: TD.textSecondary
    }
    background: Rectangle {
        radius: TD.controlRadius
        color: combo.down || combo.hovered ? TD.card : TD.field
        border { color: TD.hairline; width: 1 }
        TDFocusRing { target: combo }
    }
    delegate: T.ItemDelegate {
        id: entry
        required property var model
        required property int index
        width: ListView.view.width
        height: 32
        leftPadding: 10
        rightPadding: 10
        highlighted: combo.highlightedIndex === index
        hoverEnabled: true
        Accessible.role: Accessible.ListItem
        Accessible.name: text
        text: combo.textRole === "" ? model.modelData : model[combo.textRole] ?? model.modelData[combo.textRole]
        contentItem: Text {
            text: entry.text
            font { family: TD.fontFamily; pixelSize: TD.body; weight: entry.index === combo.currentIndex ? Font.DemiBold : Font.Normal }
            color: TD.text
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }
        background: Rectangle {
            radius: 6
            color: entry.highlighted ? TD.tint(TD.accent, 0.14) : "transparent"
        }
    }
    popup: T.Popup {
        y: combo.height + 4
        width: Math.max(combo.width, 120)
        height: Math.min(contentItem.implicitHeight + 8, 320)
        padding: 4
        margins: 8
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: combo.delegateModel
            currentIndex: combo.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: TDScrollBar {}
        }
        background: TDFloatingGround {}
    }
}
