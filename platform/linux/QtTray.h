// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Tray.h"

#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

/// StatusNotifierItem where the desktop has it, else an icon in the X11 system tray. Needs a
/// QApplication.
class QtTray final : public Tray {
    Q_OBJECT
public:
    /// `mark` is drawn where the desktop has no symbol of Tindra's to tint to its panel.
    explicit QtTray(const QIcon& mark);

    bool isAvailable() const override;
    void show() override { m_icon.show(); }
    void setStatus(const QString& text) override;

private:
    void lookAgain();

    QMenu m_menu;
    QSystemTrayIcon m_icon;
    /// Desktops start their status area when they like, and tell nobody.
    QTimer m_watch;
    bool m_wasAvailable;
};
