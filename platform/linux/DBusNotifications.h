// SPDX-License-Identifier: MIT
#pragma once

#include "platform/NotificationCenter.h"

#include <QDBusConnection>
#include <QList>

#include <optional>
#include <utility>

/// Notifications through `org.freedesktop.Notifications`.
class DBusNotifications final : public NotificationCenter {
    Q_OBJECT
public:
    explicit DBusNotifications(QDBusConnection bus, QObject* parent = nullptr);

    /// Desktops have no such question; this asks the service what it can do, so that the first
    /// notification does not have to.
    void requestAuthorization() override;
    void post(const QString& title, const QString& body) override;

    int pending() const override { return static_cast<int>(m_waiting.size()) + m_sent; }

private:
    void askCapabilities();
    void send(const QString& title, const QString& body);
    void fail(const QString& reason);

    QDBusConnection m_bus;
    /// Absent until the service has answered.
    std::optional<bool> m_bodyMarkup;
    bool m_asking = false;
    bool m_reported = false;
    QList<std::pair<QString, QString>> m_waiting;
    int m_sent = 0;
};
