// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QThread>

#include <chrono>

class TimedService;

/// The desktop's notification service, on a thread of its own: it notes when each notification
/// reached it, whatever the main thread does meanwhile.
class NotificationLog {
public:
    struct Arrival {
        /// Who sent it.
        QString app;
        QString summary;
        QString body;
        std::chrono::steady_clock::time_point at;
    };

    NotificationLog();
    ~NotificationLog();
    Q_DISABLE_COPY_MOVE(NotificationLog)

    /// What has arrived since the last call, oldest first; waits for the `expected` first of it,
    /// while the event loop turns, but not for ever.
    QList<Arrival> take(qsizetype expected);

private:
    QThread m_thread;
    QObject m_there;
    TimedService* m_service = nullptr;
};
