// SPDX-License-Identifier: MIT
#include "ui/watchers/LastCheckStrip.h"

#include "app/AppState.h"
#include "core/Norwegian.h"

using namespace Qt::StringLiterals;

namespace {

QString countText(int count, const QString& label) {
    return count >= 1 ? Norwegian::number(count) + label : QString();
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
    // What had to be cut is damaged.
    if (secondsSince1970(poll().at) >= latestSecond)
        return u"SISTE SJEKK"_s;
    return u"SISTE SJEKK · "_s + Norwegian::time(poll().at);
}

QStringList LastCheckStrip::figures() const {
    return {Norwegian::number(poll().searches), Norwegian::number(poll().fetched),
            Norwegian::number(poll().matches)};
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
