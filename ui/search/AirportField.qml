// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** One end of the journey: large codes, and the cities they stand for. */
FocusScope {
    id: view

    required property AirportFieldModel field

    implicitWidth: 240
    implicitHeight: column.implicitHeight

    Column {
        id: column
        width: parent.width

        TDLabel {
            width: parent.width
            text: view.field.label
            color: TD.textSecondary
            elide: Text.ElideRight
            font { pixelSize: TD.badge; bold: true; letterSpacing: 0.6 }
            Accessible.ignored: true
            TapHandler { onTapped: input.forceActiveFocus(Qt.TabFocusReason) }
        }
        TDTextField {
            id: input
            objectName: view.objectName + "Input"
            width: parent.width
            focus: true
            large: true
            horizontalAlignment: TextInput.AlignLeft
            placeholderText: view.field.placeholder
            text: view.field.code
            color: rest.visible ? "transparent" : TD.text
            inputMethodHints: Qt.ImhNoPredictiveText
            onTextEdited: view.field.code = text
            onActiveFocusChanged: {
                view.field.isFocused = activeFocus;
                // The last piece is what is being typed.
                if (activeFocus && focusReason !== Qt.MouseFocusReason)
                    cursorPosition = length;
            }
            Accessible.name: view.field.label
            Accessible.description: suggestions.visible ? suggestions.announcement : view.field.cityNames

            Keys.onReturnPressed: event => event.accepted = view.field.chooseHighlighted()
            Keys.onEnterPressed: event => event.accepted = view.field.chooseHighlighted()
            Keys.onEscapePressed: event => event.accepted = view.field.dismiss()
            Keys.onDownPressed: event => event.accepted = view.field.moveHighlight(1)
            Keys.onUpPressed: event => event.accepted = view.field.moveHighlight(-1)

            // A list that is too long shows its beginning while nobody types in it.
            TDLabel {
                id: rest
                visible: !input.activeFocus && input.contentWidth > input.width
                anchors.fill: parent
                text: input.text
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                verticalAlignment: Text.AlignVCenter
                font: input.font
                Accessible.ignored: true
            }
            SuggestionList {
                id: suggestions
                field: view.field
            }
        }
        TDLabel {
            id: cities
            width: parent.width
            // The form does not jump when the first city appears.
            height: Math.max(implicitHeight, oneLine.height + 8)
            topPadding: 8
            text: view.field.cityNames
            color: TD.textSecondary
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 3

            TextMetrics {
                id: oneLine
                font: cities.font
                text: "Å"
            }
            HoverHandler { id: hover }
            TDToolTip { text: cities.text; shown: hover.hovered && cities.truncated }
        }
    }
    Connections {
        target: view.field
        function onFocusedChanged() {
            if (!view.field.isFocused && input.activeFocus)
                input.focus = false;
        }
    }
}
