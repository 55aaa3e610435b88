// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"
#include "platform/OneShot.h"

#include <QCoroTask>
#include <QList>
#include <QObject>

#include <chrono>

class Clock;
class Community;
class OthersFinds;
class Worker;

/// Hands to the community what each look has found and what has sold out, and fetches
/// what others have found at the end of each round. Nobody waits for it unless they ask.
class Sharing : public QObject {
    Q_OBJECT
public:
    /// All must outlive the object.
    Sharing(Worker& worker, Community& community, OthersFinds& finds, Clock& clock);

    /// Waits until nothing is on its way, at most `patience`.
    QCoro::Task<> finished(std::chrono::milliseconds patience);

private:
    void shareFound();
    void start(QCoro::Task<> exchange);

    Community& m_community;
    OthersFinds& m_finds;
    Clock& m_clock;
    /// Of the look in progress.
    QList<Match> m_found;
    int m_underWay = 0;
    QList<OneShot<bool>> m_waiting;
};
