// SPDX-License-Identifier: MIT
import QtQuick
import Tindra.Theme

/** One of the symbols in `ui/icons`, in one colour. */
Image {
    property string name
    property color color: TD.text
    property int size: 18

    width: size
    height: size
    sourceSize { width: size; height: size }
    source: name === "" ? "" : "image://symbol/" + name + "/" + String(color).slice(1)
    Accessible.ignored: true
}
