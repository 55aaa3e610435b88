// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Theme

/** A text field; `large` is the underlined one for codes. */
T.TextField {
    id: field

    property bool large: false
    property bool invalid: false

    readonly property color edge: invalid ? TD.danger : activeFocus ? TD.accent : TD.hairline

    implicitWidth: 200
    implicitHeight: large ? 44 : 36
    leftPadding: large ? 0 : 12
    rightPadding: leftPadding
    verticalAlignment: Text.AlignVCenter
    color: TD.text
    selectionColor: TD.accent
    selectedTextColor: TD.onAccent
    placeholderTextColor: TD.textTertiary
    font { family: TD.fontFamily; pixelSize: large ? TD.pageTitle : TD.body; bold: large }
    opacity: enabled ? 1 : 0.5
    selectByMouse: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText
    HoverHandler { cursorShape: Qt.IBeamCursor }

    Text {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        color: field.placeholderTextColor
        elide: Text.ElideRight
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: TD.body
        verticalAlignment: Text.AlignVCenter
        font { family: TD.fontFamily; pixelSize: field.large ? 18 : TD.body }
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: field.large ? 0 : TD.controlRadius
        color: field.large ? "transparent" : TD.field
        border { color: field.edge; width: field.large ? 0 : field.activeFocus ? 2 : 1 }
        Rectangle {
            visible: field.large
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 2
            color: field.edge
        }
    }
}
