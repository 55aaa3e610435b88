// SPDX-License-Identifier: MIT
#pragma once

#include "platform/NotificationCenter.h"

#include <QList>

/// Remembers what was posted, and answers in a later turn.
class FakeNotificationCenter final : public NotificationCenter {
    Q_OBJECT
public:
    void requestAuthorization() override { ++authorizations; }
    bool isAvailable() const override { return isThere; }
    void post(const Notification& notification, Answer answer = {}) override {
        posted.append(notification);
        if (answer && answers)
            QMetaObject::invokeMethod(
                this, [answer = std::move(answer), taken = isThere] { answer(taken); },
                Qt::QueuedConnection);
    }
    int pending() const override { return 0; }

    bool isThere = true;
    /// Off, nobody learns what became of a notification, as when the process dies.
    bool answers = true;
    QList<Notification> posted;
    int authorizations = 0;
};
