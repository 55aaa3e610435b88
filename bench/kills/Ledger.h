// SPDX-License-Identifier: MIT
#pragma once

#include "core/Database.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>

/// What a data folder held after each of many runs that shared it, and what the desktop was told
/// meanwhile: says at the end whether anything of that does not fit. Finds of the user's own
/// watchers only; sold-outs count as what ends them.
class Ledger {
public:
    /// The texts of a notification, which is all that the desktop knows of a find.
    static QString text(const QString& summary, const QString& body);

    /// A notification that reached the desktop in this run. Runs are numbered in their order.
    void noteTold(int run, const QString& text);
    /// What is stored after a run has ended, in whatever way.
    void noteStored(int run, Database& database);

    struct Account {
        /// Stored finds.
        qsizetype finds = 0;
        qsizetype soldOuts = 0;
        /// Told, or taken for seen, without being stored; or stored and gone again.
        qsizetype lost = 0;
        /// Stored, and not told before the end.
        qsizetype unsaid = 0;
        /// Stored anew though nothing had sold out since.
        qsizetype storedTwice = 0;
        /// Told more often than found. One that two watchers found in one run is told once.
        qsizetype toldTwice = 0;
        /// Runs that ended between storing a find and noting that it was told.
        int cutShort = 0;
        /// One line for each of these that is wrong.
        QStringList complaints;
    };
    Account account() const;

private:
    struct Row {
        Hit hit;
        /// The run that has stored it.
        int run = 0;
    };

    void compareWithSeen(Account& account) const;
    void compareWithTold(Account& account) const;

    /// In the order of storing.
    QMap<qint64, Row> m_rows;
    QMap<qint64, QMap<FareKey, SeenStore::Seen>> m_seen;
    /// Runs in which each text was told.
    QHash<QString, QList<int>> m_told;
    qsizetype m_gone = 0;
    int m_cutShort = 0;
};
