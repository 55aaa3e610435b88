// SPDX-License-Identifier: MIT
#include "ui/watchers/LastCheckStrip.h"

#include "app/AppState.h"
#include "ui/watchers/Numbers.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace {

QString countText(int count, const QString& label) {
    return count >= 1 ? norwegian(count) + label : QString();
}

} // namespace

LastCheckStrip::LastCheckStrip(const AppState& state, QObject* parent)
    : QObject(parent), m_state(state) {
    connect(&state, &AppState::lastPollChanged, this, &LastCheckStrip::changed);
}

PollSummary LastCheckStrip::poll() const {
    return m_state.lastPoll().value_or(PollSummary());
}

bool LastCheckStrip::present() const {
    return m_state.lastPoll().has_value();
}

QString LastCheckStrip::heading() const {
    const double seconds = secondsSince1970(poll().at);
    // What had to be cut is damaged.
    if (seconds >= latestSecond)
        return u"SISTE SJEKK"_s;
    const QTime time = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds)).time();
    return u"SISTE SJEKK · "_s + norwegian().toString(time, QLocale::ShortFormat);
}

QStringList LastCheckStrip::figures() const {
    return {norwegian(poll().searches), norwegian(poll().fetched), norwegian(poll().matches)};
}

QString LastCheckStrip::alertsText() const {
    return countText(poll().newAlerts, u" nye varsler"_s);
}

QString LastCheckStrip::soldOutText() const {
    return countText(poll().soldOut, u" utsolgt"_s);
}

QStringList LastCheckStrip::errorLines() const {
    QStringList lines;
    for (const QString& error : poll().errors + poll().notes)
        lines.append(u"⚠ "_s + error);
    return lines;
}
