// SPDX-License-Identifier: MIT
#include "ui/window/DashboardView.h"

#include "app/AppState.h"
#include "core/Norwegian.h"
#include "ui/session/SessionModel.h"

using namespace Qt::StringLiterals;

DashboardView::DashboardView(AppState& state, SessionModel& session)
    : m_state(state), m_session(session) {
    connect(&state, &AppState::searchesChanged, this, &DashboardView::changed);
    connect(&state, &AppState::reloaded, this, &DashboardView::changed);
    connect(&state, &AppState::lastPollChanged, this, &DashboardView::changed);
    connect(&session, &SessionModel::changed, this, &DashboardView::changed);
}

QString DashboardView::errorText() const {
    if (!m_state.lastPoll() || m_session.isLoggedOut())
        return {};
    const QStringList& errors = m_state.lastPoll()->errors;
    if (errors.isEmpty())
        return m_state.lastPoll()->notes.value(0);
    if (errors.size() == 1)
        return errors.first();
    return u"%1 søk feilet ved siste sjekk — se Overvåkere."_s.arg(errors.size());
}

QString DashboardView::watchersValue() const {
    return Norwegian::number(enabledOf(m_state.searches()).size());
}

QString DashboardView::pausedText() const {
    const auto paused = m_state.searches().size() - enabledOf(m_state.searches()).size();
    return paused == 0 ? u"aktive"_s : u"aktive · %1 pauset"_s.arg(paused);
}

QString DashboardView::hitsValue() const {
    return Norwegian::number(m_state.newToday());
}

QString DashboardView::hitsText() const {
    return hasNewHits() ? u"nye i dag"_s : u"ingen nye i dag"_s;
}

bool DashboardView::hasNewHits() const {
    return m_state.newToday() > 0;
}

QString DashboardView::lastCheckValue() const {
    // What had to be cut is damaged.
    const bool isKnown =
        m_state.lastPoll() && secondsSince1970(m_state.lastPoll()->at) < latestSecond;
    return isKnown ? Norwegian::time(m_state.lastPoll()->at) : u"–"_s;
}

QString DashboardView::lastCheckSub() const {
    if (!m_state.lastPoll())
        return u"ikke kjørt enda"_s;
    return Norwegian::number(m_state.lastPoll()->fetched) + u" reiser gjennomgått"_s;
}
