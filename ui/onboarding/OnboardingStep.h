// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

enum class StepState { done, active, upcoming };

/// One numbered step of the onboarding.
struct OnboardingStep {
    Q_GADGET
    QML_VALUE_TYPE(onboardingStep)
    Q_PROPERTY(int number MEMBER number)
    Q_PROPERTY(bool isDone READ isDone)
    Q_PROPERTY(bool isActive READ isActive)
    Q_PROPERTY(bool isUpcoming READ isUpcoming)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString line READ line)
public:
    int number = 0;
    StepState state = StepState::upcoming;
    QString title;
    /// Shown instead of `text` once the step is done, unless it is empty.
    QString doneText;
    QString text;

    bool isDone() const { return state == StepState::done; }
    bool isActive() const { return state == StepState::active; }
    bool isUpcoming() const { return state == StepState::upcoming; }
    const QString& line() const { return isDone() && !doneText.isEmpty() ? doneText : text; }
    bool operator==(const OnboardingStep&) const = default;

    static OnboardingStep connection(bool isDone);
    static OnboardingStep firstRoute(bool isConnected, qsizetype watchers);
    static OnboardingStep notifications();
};
