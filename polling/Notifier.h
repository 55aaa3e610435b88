// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"
#include "core/Match.h"

#include <QHash>
#include <QString>

class Clock;
class Database;
class NotificationCenter;

/// Tells the user by desktop notification, as far as the settings `native_notify` (all of them)
/// and `notify_soldout` allow; both are on until the user switches them off.
class Notifier {
public:
    /// All three must outlive the notifier.
    Notifier(Database& database, NotificationCenter& center, Clock& clock);

    /// Asks the desktop for permission, once, at the start.
    void requestPermission();

    /// A new seat of the user's own watchers; the same fare and cabin is not repeated within three
    /// hours.
    void notifyNewFare(const Match& match);
    /// `label` names route, date and flights; `cabins` are raw values.
    void notifySoldOut(const QString& label, const CabinSet& cabins);
    /// A seat that another hunter found.
    void notifyCommunityFare(const Match& match);
    /// Whether `post` reaches the user now, as far as the settings and the desktop are known.
    bool canPost() const;
    void post(const QString& title, const QString& body);

    /// What a notification about an offer gives back when it is opened: `Match` of this key, "#"
    /// and cabin.
    static QString subject(const Match& match);

private:
    void postOffer(const QString& title, const QString& body, const Match& match);
    bool shouldNotify(const QString& key);

    Database& m_database;
    NotificationCenter& m_center;
    Clock& m_clock;
    QHash<QString, Ticks> m_recentlyNotified;
};
