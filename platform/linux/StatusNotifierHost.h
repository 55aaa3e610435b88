// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <memory>

class QDBusPendingCallWatcher;

/// Whether the desktop shows status notifiers, which may come and go. Never waits for an answer.
class StatusNotifierHost final : public QObject {
    Q_OBJECT
public:
    explicit StatusNotifierHost(QDBusConnection bus);
    ~StatusNotifierHost() override;

    /// The desktop has answered, or there is nobody to ask.
    bool isKnown() const { return m_isKnown; }
    bool isThere() const { return m_isThere; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void ask();

private:
    void set(bool isThere);

    QDBusConnection m_bus;
    /// The question that counts; answers to earlier ones are of no interest.
    std::unique_ptr<QDBusPendingCallWatcher> m_question;
    bool m_isKnown = false;
    bool m_isThere = false;
};
