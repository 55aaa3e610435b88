// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

class AppState;
struct PollSummary;

/// What the last round that ended has found.
class LastCheckStrip : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(LastCheckStripModel)
    QML_UNCREATABLE("made by WatchersSection")

    /// Whether there has been a round.
    Q_PROPERTY(bool present READ present NOTIFY changed)
    /// "SISTE SJEKK · 14:05", local time; without the time where that is beyond all calendars.
    Q_PROPERTY(QString heading READ heading NOTIFY changed)
    /// The three figures "overvåkere", "reiser gjennomgått" and "traff filtrene", in that order.
    Q_PROPERTY(QStringList figures READ figures NOTIFY changed)
    /// "4 nye varsler" and "1 utsolgt"; empty where there are none.
    Q_PROPERTY(QString alertsText READ alertsText NOTIFY changed)
    Q_PROPERTY(QString soldOutText READ soldOutText NOTIFY changed)
    /// One line a watcher that failed or did not get all of its answers, "⚠ søk 3: …".
    Q_PROPERTY(QStringList errorLines READ errorLines NOTIFY changed)
public:
    /// `state` must outlive the strip.
    explicit LastCheckStrip(const AppState& state, QObject* parent = nullptr);

    bool present() const;
    QString heading() const;
    QStringList figures() const;
    QString alertsText() const;
    QString soldOutText() const;
    QStringList errorLines() const;

Q_SIGNALS:
    void changed();

private:
    PollSummary poll() const;

    const AppState& m_state;
};
