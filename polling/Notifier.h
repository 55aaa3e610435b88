// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SessionState.h"
#include "core/Cabin.h"
#include "core/Match.h"

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
/// an offer, what comes back is the offer's identity.
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
    /// `label` names route, date and flights; `cabins` are raw values; `match` is the record's id,
    /// 0 where there is none.
    void notifySoldOut(const QString& label, const CabinSet& cabins, qint64 match = 0);
    /// A seat that another hunter found.
    void notifyCommunityFare(const Match& match);
    /// The hunt gets no data before the user has signed in.
    void notifySignedOut(SignOut how);
    /// Tells what was stored and could not be told, by an earlier run or for want of a desktop, as
    /// far as it is younger than three hours and still so; the rest is marked without a word.
    void tellRest();
    /// Whether `post` reaches the user now, as far as the settings and the desktop are known.
    bool canPost() const;
    void post(const QString& title, const QString& body);

private:
    void postOffer(const QString& title, const QString& body, const Match& match);
    void hand(const Notification& notification, qint64 match);
    void told(qint64 match);
    void markTold();
    bool shouldNotify(const QString& key);

    Database& m_database;
    NotificationCenter& m_center;
    Clock& m_clock;
    QHash<QString, Ticks> m_recentlyNotified;
    /// Handed to the desktop, which has not answered yet.
    QSet<qint64> m_underWay;
    /// To be marked together, in this turn of the event loop.
    QList<qint64> m_told;
    bool m_isMarking = false;
};
