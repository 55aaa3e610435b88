// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Controls

/** A setting that is on or off. */
SettingRow {
    id: row

    property bool on: false
    signal switched(bool on)

    TDSwitch {
        objectName: row.objectName + "Switch"
        label: row.title
        checked: row.on
        Accessible.description: row.note
        onToggled: {
            row.switched(checked);
            // What could not be stored is not kept either.
            checked = Qt.binding(() => row.on);
        }
    }
}
