// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Tray.h"
#include "platform/linux/StatusNotifierHost.h"

#include <QIcon>
#include <QTimer>

#include <memory>
#include <optional>

/// StatusNotifierItem where the desktop has it, else an icon in the X11 system tray. Needs a
/// QApplication, and to be the only one that makes or asks for Qt's own tray icons: Qt looks for a
/// status area at the first of them, waits for the answer, and never looks again.
class QtTray final : public Tray {
    Q_OBJECT
public:
    /// `mark` is drawn where the desktop has no symbol of Tindra's to tint to its panel.
    QtTray(const QIcon& mark, const QDBusConnection& bus);
    ~QtTray() override;

    bool isAvailable() const override { return m_isAvailable; }
    void show() override;
    void setStatus(const QString& text) override;

private:
    /// What Qt has decided for with the first icon, for the rest of the run.
    enum class Kind { statusNotifier, x11 };
    struct Icon;

    void look();
    void makeIcon();

    QIcon m_mark;
    StatusNotifierHost m_host;
    std::optional<Kind> m_kind;
    std::unique_ptr<Icon> m_icon;
    QString m_status;
    /// X11 trays start when they like, and tell nobody.
    QTimer m_x11Watch;
    bool m_isWanted = false;
    bool m_isAvailable = false;
};
