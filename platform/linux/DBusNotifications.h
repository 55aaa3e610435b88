// SPDX-License-Identifier: MIT
#pragma once

#include "platform/NotificationCenter.h"

#include <QDBusConnection>
#include <QHash>
#include <QList>
#include <QStringList>

#include <optional>

/// Notifications through `org.freedesktop.Notifications`.
class DBusNotifications final : public NotificationCenter {
    Q_OBJECT
public:
    explicit DBusNotifications(QDBusConnection bus, QObject* parent = nullptr);

    /// Desktops have no such question; this asks the service what it can do, so that the first
    /// notification does not have to.
    void requestAuthorization() override;
    void post(const Notification& notification) override;

    int pending() const override { return static_cast<int>(m_waiting.size()) + m_sent; }

private Q_SLOTS:
    void chosen(uint id, const QString& action);
    void closed(uint id, uint reason);

private:
    void askCapabilities();
    void send(const Notification& notification);
    void fail(const QString& reason);

    QDBusConnection m_bus;
    /// What the service can do; absent until it has answered.
    std::optional<QStringList> m_abilities;
    bool m_asking = false;
    bool m_reported = false;
    QList<Notification> m_waiting;
    /// What those that are shown are about.
    QHash<uint, QString> m_subjects;
    int m_sent = 0;
};
