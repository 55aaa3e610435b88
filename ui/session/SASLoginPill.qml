// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tindra.Controls
import Tindra.Session
import Tindra.Theme

/** One line that says how the session is. */
RowLayout {
    id: pill

    required property SessionModel model

    readonly property color tone: model.isWell ? TD.success : model.isLoggedOut ? TD.danger : model.isRefused ? TD.warn : TD.textSecondary

    spacing: 6
    TDStatusDot {
        color: pill.tone
        pulsing: pill.model.isChecking
    }
    TDLabel {
        objectName: "loginStatus"
        Layout.fillWidth: true
        text: pill.model.text
        color: pill.tone
        elide: Text.ElideRight
        font { pixelSize: TD.caption; weight: Font.DemiBold }
    }
}
