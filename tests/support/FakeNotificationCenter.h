// SPDX-License-Identifier: MIT
#pragma once

#include "platform/NotificationCenter.h"

#include <QList>

/// Remembers what was posted.
class FakeNotificationCenter final : public NotificationCenter {
    Q_OBJECT
public:
    struct Posted {
        QString title;
        QString body;
        bool operator==(const Posted&) const = default;
    };

    void requestAuthorization() override { ++authorizations; }
    void post(const QString& title, const QString& body) override { posted.append({title, body}); }
    int pending() const override { return 0; }

    QList<Posted> posted;
    int authorizations = 0;
};
