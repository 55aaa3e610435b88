// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QSet>
#include <QUrl>

#include <optional>

class Clock;
class Community;
class Database;
class Notifier;
struct FoundByOthers;

/// What other hunters have found for the user's watchers, and what becomes of it: it is shown;
/// stored and told, once, while it is fresh; and removed again when it has sold out.
class OthersFinds : public QObject {
    Q_OBJECT
public:
    /// All must outlive the object.
    OthersFinds(Database& database, Community& community, Notifier& notifier, Clock& clock);

    /// Those that are not among the stored offers, in the service's order.
    const QList<Match>& hits() const { return m_hits; }
    /// Asks the service, and announces and stores what is fresh.
    QCoro::Task<> refresh();

Q_SIGNALS:
    void hitsChanged();
    /// A fresh find has been stored and announced.
    void found(const Match& find);
    /// What the database holds has changed.
    void stored();

private:
    void show(QList<Match> hits, const QSet<OfferId>& known);
    void removeGone(const FoundByOthers& answer, const QList<Route>& asked, QList<Hit>& hits);
    void noteServed(const QList<Match>& theirs, const QList<Hit>& hits);
    QList<Match> fresh() const;
    void announceFresh(QSet<OfferId> known);

    Database& m_database;
    Community& m_community;
    Notifier& m_notifier;
    Clock& m_clock;
    QList<Match> m_hits;
    int m_refreshes = 0;
    /// What the service has had in this run, and which service that is.
    QSet<OfferId> m_served;
    std::optional<QUrl> m_service;
};
