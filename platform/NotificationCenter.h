// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>

/// All texts are plain; line feeds in the body are line breaks.
struct Notification {
    QString title;
    QString body;
    /// What it is about, given back when the user opens it or chooses its action; empty when there
    /// is nothing to open.
    QString subject{};
    /// Label of an action of its own beside opening; empty for none.
    QString action{};

    bool operator==(const Notification&) const = default;
};

/// The desktop's notifications. Nothing here waits for the desktop's answer.
class NotificationCenter : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Asks for permission to show alerts with sound, where the desktop has such a question.
    virtual void requestAuthorization() = 0;
    /// Whether the desktop is known to show notifications now; false until it has answered.
    virtual bool isAvailable() const = 0;
    /// Told in a later turn whether the desktop has taken a notification.
    using Answer = std::function<void(bool isTaken)>;

    /// Shows one notification at once, with the default sound. What can be done about it is offered
    /// where the desktop can, and somebody listens to `opened`.
    virtual void post(const Notification& notification, Answer answer = {}) = 0;
    /// Notifications that the desktop has not taken yet.
    virtual int pending() const = 0;

Q_SIGNALS:
    /// Notifications cannot be shown; `reason` says why and what to do, in Norwegian. Emitted at
    /// most once a run.
    void unavailable(const QString& reason);
    /// The user wants to see what the notification is about.
    void opened(const QString& subject);
    /// The user has chosen the notification's own action.
    void actionChosen(const QString& subject);
    /// The desktop has notifications again, or for the first time in this run.
    void appeared();
    /// `pending()` has become 0.
    void settled();
};
