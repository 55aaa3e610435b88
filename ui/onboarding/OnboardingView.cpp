// SPDX-License-Identifier: MIT
#include "ui/onboarding/OnboardingView.h"

#include "app/AppState.h"
#include "platform/Clock.h"
#include "ui/onboarding/OnboardingPreset.h"
#include "ui/session/SessionModel.h"

OnboardingView::OnboardingView(AppState& state, SessionModel& session, Clock& clock)
    : m_state(state), m_session(session), m_clock(clock) {
    connect(&state, &AppState::searchesChanged, this, &OnboardingView::stepsChanged);
    connect(&session, &SessionModel::changed, this, &OnboardingView::stepsChanged);
}

OnboardingStep OnboardingView::connectionStep() const {
    return OnboardingStep::connection(m_loginOpened && m_session.isLoggedIn());
}

OnboardingStep OnboardingView::routeStep() const {
    return OnboardingStep::firstRoute(connectionStep().isDone(), m_state.searches().size());
}

QStringList OnboardingView::presetLabels() const {
    QStringList labels;
    for (const OnboardingPreset& preset : OnboardingPreset::all())
        labels.append(preset.label);
    return labels;
}

void OnboardingView::openLogin() {
    m_loginOpened = true;
    Q_EMIT stepsChanged();
    m_session.openLogin();
}

void OnboardingView::choosePreset(int index) {
    const OnboardingPreset& preset = OnboardingPreset::all().at(index);
    addPreset(preset.name, preset.origin, preset.dests);
}

void OnboardingView::addPreset(const QString& name, const QString& origin, const QString& dests) {
    m_state.addSearchAndRun(Onboarding::watcher(name, origin, dests, m_clock.today()));
}

void OnboardingView::finish() {
    m_state.finishOnboarding();
}
