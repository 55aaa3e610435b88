// SPDX-License-Identifier: MIT
#pragma once

#include "ui/watchers/RoundPace.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class Worker;

/// What the worker is doing right now.
class ActivityStrip : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(ActivityStripModel)
    QML_UNCREATABLE("made by WatchersSection")

    Q_PROPERTY(bool running READ running NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    /// "3 av 12 oppslag · roterer over 40", of the current watcher; empty while it has none.
    Q_PROPERTY(QString lookupsText READ lookupsText NOTIFY changed)
    /// How far the round is with all its watchers, 0 to 1; -1 while that cannot be told.
    Q_PROPERTY(double fraction READ fraction NOTIFY changed)
    /// "Overvåker 2 av 3 · ca. 6 min igjen", of the round; empty while there is nothing to tell.
    Q_PROPERTY(QString roundText READ roundText NOTIFY changed)
public:
    /// Both must outlive the strip.
    ActivityStrip(const Worker& worker, const Clock& clock, QObject* parent = nullptr);

    bool running() const;
    QString statusText() const;
    QString lookupsText() const;
    double fraction() const;
    QString roundText() const;

    /// The second text for `done` of `total` lookups and a rotation over `rotation` legs.
    static QString lookupsText(int done, int total, int rotation);

Q_SIGNALS:
    void changed();

private:
    void follow();

    const Worker& m_worker;
    const Clock& m_clock;
    /// Absent between rounds.
    std::optional<RoundPace> m_pace;
    std::optional<int> m_minutesLeft;
};
