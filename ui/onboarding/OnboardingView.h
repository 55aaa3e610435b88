// SPDX-License-Identifier: MIT
#pragma once

#include "ui/onboarding/OnboardingStep.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

class AppState;
class Clock;
class SessionModel;

/// The screen before the first hunt: sign in, pick a first route, begin.
class OnboardingView : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(OnboardingViewModel)
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(OnboardingStep connectionStep READ connectionStep NOTIFY stepsChanged)
    Q_PROPERTY(OnboardingStep routeStep READ routeStep NOTIFY stepsChanged)
    Q_PROPERTY(OnboardingStep notificationStep READ notificationStep CONSTANT)
    Q_PROPERTY(QStringList presetLabels READ presetLabels CONSTANT)
public:
    /// All must outlive the view.
    OnboardingView(AppState& state, SessionModel& session, Clock& clock);

    OnboardingStep connectionStep() const;
    OnboardingStep routeStep() const;
    OnboardingStep notificationStep() const { return OnboardingStep::notifications(); }
    QStringList presetLabels() const;

    Q_INVOKABLE void openLogin();
    Q_INVOKABLE void choosePreset(int index);
    /// Stores a watcher and starts a round.
    void addPreset(const QString& name, const QString& origin, const QString& dests);
    Q_INVOKABLE void finish();

Q_SIGNALS:
    void stepsChanged();

private:
    AppState& m_state;
    SessionModel& m_session;
    Clock& m_clock;
    /// A session from before does not count until the user has seen where it comes from.
    bool m_loginOpened = false;
};
