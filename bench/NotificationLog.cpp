// SPDX-License-Identifier: MIT
#include "bench/NotificationLog.h"

#include "tests/support/NotificationService.h"

#include <QMutex>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

class TimedService : public NotificationService {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    TimedService() : NotificationService({u"body"_s, u"actions"_s}) {}

    qsizetype count() {
        const QMutexLocker lock(&m_mutex);
        return m_arrivals.size();
    }
    QList<NotificationLog::Arrival> take() {
        const QMutexLocker lock(&m_mutex);
        return std::exchange(m_arrivals, {});
    }

public Q_SLOTS:
    uint Notify(const QString& app, uint replaces, const QString& icon, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints,
                int timeout) {
        const auto now = std::chrono::steady_clock::now();
        const QMutexLocker lock(&m_mutex);
        m_arrivals.append({app, summary, body, now});
        return NotificationService::Notify(app, replaces, icon, summary, body, actions, hints,
                                           timeout);
    }

private:
    QMutex m_mutex;
    QList<NotificationLog::Arrival> m_arrivals;
};

NotificationLog::NotificationLog() {
    m_there.moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(
        &m_there, [this] { m_service = new TimedService; }, Qt::BlockingQueuedConnection);
}

NotificationLog::~NotificationLog() {
    QMetaObject::invokeMethod(
        &m_there, [this] { delete std::exchange(m_service, nullptr); },
        Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

QList<NotificationLog::Arrival> NotificationLog::take(qsizetype expected) {
    if (!QTest::qWaitFor([&] { return m_service->count() >= expected; }, 5000))
        qWarning("the notification service did not get all");
    return m_service->take();
}

#include "NotificationLog.moc"
