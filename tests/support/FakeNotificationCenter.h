// SPDX-License-Identifier: MIT
#pragma once

#include "platform/NotificationCenter.h"

#include <QList>

/// Remembers what was posted.
class FakeNotificationCenter final : public NotificationCenter {
    Q_OBJECT
public:
    void requestAuthorization() override { ++authorizations; }
    bool isAvailable() const override { return isThere; }
    void post(const Notification& notification) override { posted.append(notification); }
    int pending() const override { return 0; }

    bool isThere = true;
    QList<Notification> posted;
    int authorizations = 0;
};
