// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Match.h"
#include "core/Search.h"

#include <QCoroTask>
#include <QObject>

class Clock;
class Community;
class WatcherStore;

/// Some invented people who watch the same journeys as the demo: they report finds of their own to
/// the community, one at once and another every few minutes, and now and then that one is gone.
class DemoHunters : public QObject {
    Q_OBJECT
public:
    /// All must outlive the hunters. `watchers` are the demo's, `site` is where finds can be
    /// booked.
    DemoHunters(Community& community, WatcherStore& watchers, Clock& clock, Site site);

    /// Reports what they have by now, and goes on until the hunters are destroyed.
    QCoro::Task<> start();

    /// Their `number`th find, found at `foundAt`: an offer that fits one of the demo's `watchers`,
    /// on a flight that the stand-in airline does not have.
    static Match find(int number, const QList<Search>& watchers, Instant foundAt, const Site& site);

private:
    QCoro::Task<> report(int number, std::chrono::minutes ago);
    QList<Search> watchers() const;

    Community& m_community;
    WatcherStore& m_watchers;
    Clock& m_clock;
    Site m_site;
};
