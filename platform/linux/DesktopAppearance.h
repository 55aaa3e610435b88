// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Appearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QMap>
#include <QVariant>

class QDBusPendingCall;

/// What the desktop's settings portal says (`org.freedesktop.portal.Settings`), GNOME's and KDE's
/// keys for motion among it; without an answer, what the application's palette looks like.
class DesktopAppearance final : public Appearance {
    Q_OBJECT
public:
    /// Waits shortly for the portal, so that the first picture is in the right mode. A portal that
    /// answers later, or is started later, counts from then on.
    explicit DesktopAppearance(QDBusConnection bus, QObject* parent = nullptr);

    bool isDark() const override { return m_look.dark; }
    bool reducesMotion() const override { return m_look.still; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void set(const QString& group, const QString& key, const QDBusVariant& value);

private:
    struct Look {
        bool dark = false;
        bool still = false;
        bool operator==(const Look&) const = default;
    };

    QDBusPendingCall ask();
    void take(const QDBusPendingCall& answer);
    void askAgain();
    void update();

    QDBusConnection m_bus;
    /// What the portal has said, by group and key; empty without one.
    QMap<QString, QVariantMap> m_settings;
    Look m_look;
};
