// SPDX-License-Identifier: MIT
#pragma once

#include "polling/FareComparison.h"

#include <QCoroTask>
#include <QObject>

class Database;
class Notifier;

/// Puts what a look has found on the disk, and then says it.
class Announcer : public QObject {
    Q_OBJECT
public:
    /// Both must outlive the object.
    Announcer(Database& database, Notifier& notifier);

    /// How much was said.
    struct Count {
        int found = 0;
        int soldOut = 0;
    };
    /// First on the disk, then said: what was announced is never announced again after a crash, and
    /// what was stored is told by the next start. When the disk takes nothing, a new seat is worth
    /// saying all the same; that one has sold out would be said again in every round, so it waits.
    Count announce(qint64 watcher, QList<FareNews> news);
    /// As of Notifier.
    QCoro::Task<> settled();

Q_SIGNALS:
    void matchFound(const Match& match);
    void soldOut(const SoldOut& record);

private:
    bool store(qint64 watcher, QList<FareNews>& news);

    Database& m_database;
    Notifier& m_notifier;
};
