// SPDX-License-Identifier: MIT
#include "ui/window/RootView.h"

#include "airline/LegFetcher.h"
#include "app/AppState.h"

using namespace Qt::StringLiterals;

RootView::RootView(AppState& state, LegFetcher& fetcher, bool isDemo)
    : m_state(state), m_fetcher(fetcher), m_isDemo(isDemo) {
    connect(&state, &AppState::onboardedChanged, this, &RootView::onboardedChanged);
    connect(&state, &AppState::reloaded, this, &RootView::hitsBadgeChanged);
    connect(&state, &AppState::storageChanged, this, &RootView::noticeChanged);
}

void RootView::select(int section) {
    const int known = section >= Dashboard && section <= Settings ? section : Dashboard;
    if (std::exchange(m_selection, known) != known)
        Q_EMIT selectionChanged();
}

bool RootView::onboarded() const {
    return m_passesOverOnboarding || m_state.onboarded();
}

void RootView::passOverOnboarding() {
    m_passesOverOnboarding = true;
    Q_EMIT onboardedChanged();
}

QString RootView::hitsBadge() const {
    const int count = m_state.newToday();
    return count > 0 ? u"%1 nye"_s.arg(count) : QString();
}

QString RootView::notice() const {
    const QString& problem = m_state.storageProblem();
    return problem.isEmpty() ? m_state.storageNotice() : problem;
}

bool RootView::canDismissNotice() const {
    return m_state.storageProblem().isEmpty() && !m_state.storageNotice().isEmpty();
}

void RootView::dismissNotice() {
    if (canDismissNotice())
        m_state.dismissStorageNotice();
}

void RootView::start() {
    if (!std::exchange(m_isStarted, true) && enabledOf(m_state.searches()).isEmpty())
        m_fetcher.verifyLogin();
}
