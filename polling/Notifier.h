// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SessionState.h"
#include "core/Match.h"
#include "platform/OneShot.h"

#include <QCoroTask>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

class Clock;
class Database;
class NotificationCenter;
struct Notification;

/// Tells the user by desktop notification, as far as the settings `native_notify` (all of them)
/// and `notify_soldout` allow; both are on until the user switches them off.
///
/// An offer that was stored as still to be told is marked as told when the desktop has taken its
/// notification, or at once where there is nothing to say. When the user opens a notification about
/// an offer, what comes back is the text of its `OfferId`.
class Notifier : public QObject {
    Q_OBJECT
public:
    /// All three must outlive the notifier.
    Notifier(Database& database, NotificationCenter& center, Clock& clock);
    ~Notifier() override;

    /// Asks the desktop for permission, once, at the start.
    void requestPermission();

    /// A new seat of the user's own watchers; the same fare and cabin is not repeated within three
    /// hours.
    void notifyNewFare(const Match& match);
    void notifySoldOut(const SoldOut& record);
    /// A seat that another hunter found.
    void notifyCommunityFare(const Match& match);
    /// The hunt gets no data before the user has signed in.
    void notifySignedOut(SignOut how);
    /// Tells what was stored and could not be told, by an earlier run or for want of a desktop, as
    /// far as it is younger than three hours and still so; the rest is marked without a word.
    void tellRest();
    /// Waits, for a moment at most, until the desktop has answered for what it was handed and that
    /// is noted. What dies before is told again by the next run.
    QCoro::Task<> settled();
    /// Whether `post` reaches the user now, as far as the settings and the desktop are known.
    bool canPost() const;
    void post(const QString& title, const QString& body);

private:
    class LastSeen;
    void notify(const Match& match);
    void notify(const SoldOut& record) { notifySoldOut(record); }
    void postOffer(const QString& title, const QString& body, const Match& match);
    void hand(const Notification& notification, qint64 match, const std::optional<OfferId>& offer);
    void told(qint64 match);
    void markTold();
    void endSettling();
    bool shouldNotify(const OfferId& offer);

    Database& m_database;
    NotificationCenter& m_center;
    Clock& m_clock;
    QHash<OfferId, Ticks> m_recentlyNotified;
    /// Handed to the desktop, which has not answered yet.
    QSet<qint64> m_underWay;
    /// To be marked together, in this turn of the event loop.
    QList<qint64> m_told;
    bool m_isMarking = false;
    /// Those who wait for `settled`.
    QList<OneShot<bool>> m_settling;
};
