// SPDX-License-Identifier: MIT
#pragma once

#include "airline/SignInContext.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <optional>

/// Renews the session without the user: while the identity provider still knows the browser, its
/// sign-in flow redirects straight back to the airline's site.
class SingleSignOn : public QObject {
    Q_OBJECT
public:
    explicit SingleSignOn(SignInContext context) : m_context(std::move(context)) {}

    /// True when the browser came back to the site. A form is believed only when it comes twice.
    /// Ends without an answer as soon as the user opens the sign-in window.
    QCoro::Task<bool> silentSSORefresh(int maxSteps);
    /// One try of at most `maxSteps` steps of 1.5 seconds: "done", "form", or absent when neither
    /// showed itself. Takes the web view over; a capture that waits ends with nothing.
    QCoro::Task<std::optional<QString>> silentSSOAttempt(int maxSteps);
    /// The identity provider's cookies, for the log: names and expiries, no values.
    QCoro::Task<QString> authCookieSummary();

private:
    void noteSuccess() const;

    SignInContext m_context;
};
