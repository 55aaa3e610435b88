// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tindra.Controls
import Tindra.Search
import Tindra.Theme

/** The suggestions of `field`, floating under the input that is their parent, which keeps the focus. */
T.Popup {
    id: list

    required property AirportFieldModel field
    /** What a screen reader says of it. */
    readonly property string announcement: {
        const row = rows.count > 0 ? rows.itemAt(field.highlighted) as SuggestionRow : null;
        return rows.count + " forslag" + (row ? ". " + row.code + " " + row.city : "");
    }

    visible: field.open
    y: parent.height + 4
    width: 260
    padding: 4
    margins: 8
    implicitHeight: contentHeight + topPadding + bottomPadding
    focus: false
    closePolicy: T.Popup.NoAutoClose
    background: TDFloatingGround {}
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: TD.quick } }

    contentItem: Column {
        Accessible.role: Accessible.List
        Accessible.name: "Forslag"

        Repeater {
            id: rows
            model: list.field.suggestions
            SuggestionRow {
                required property int index
                width: list.availableWidth
                highlighted: index === list.field.highlighted
                onHoveringChanged: if (hovering) list.field.highlighted = index
                onPick: code => list.field.pick(code)
            }
        }
    }
}
