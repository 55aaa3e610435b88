// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Match.h"

#include <QCoroTask>
#include <QObject>

class Clock;
class Community;

/// Some invented people who watch the same journeys as the demo: they report finds of their own to
/// the community, one at once and another every few minutes, and now and then that one is gone.
class DemoHunters : public QObject {
    Q_OBJECT
public:
    /// Both must outlive the hunters. `site` is where their finds can be booked.
    DemoHunters(Community& community, Clock& clock, Site site);

    /// Reports what they have by now, and goes on until the hunters are destroyed.
    QCoro::Task<> start();

    /// Their `number`th find, found at `foundAt`: an offer that fits one of the demo's watchers,
    /// on a flight that the stand-in airline does not have.
    static Match find(int number, QDate today, Instant foundAt, const Site& site);

private:
    QCoro::Task<> report(int number, std::chrono::minutes ago);

    Community& m_community;
    Clock& m_clock;
    Site m_site;
};
