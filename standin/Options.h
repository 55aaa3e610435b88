// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace standin {

/// How the identity provider and the sign-in behave.
struct SignInOptions {
    enum class Challenge {
        None,   ///< the forms have no challenge
        Solved, ///< a script writes the token into the form after `challengeDelay`
        Never   ///< no token comes by itself; a visible button gives one to a human
    };
    enum class Trouble {
        None,
        EndlessRedirects, ///< the provider redirects to itself for ever
        BlankPage,        ///< instead of a form, an empty page
        FormLoops         ///< the user-name form comes back again and again, without a message
    };

    bool isRequired = false; ///< search pages and offers are for signed-in visitors only
    QString user = QStringLiteral("demo@tindra.example");
    QString password = QStringLiteral("demo");
    Challenge challenge = Challenge::Solved;
    std::chrono::milliseconds challengeDelay{500};
    /// A form without its token comes back without a message; otherwise it is accepted.
    bool isChallengeRequired = false;
    std::chrono::seconds siteSession{0}; ///< the site signs out after this time; 0: never
    std::chrono::seconds ssoSession{
        0}; ///< single sign-on ends so long after its last use; 0: never
    Trouble trouble = Trouble::None;
    /// The provider knows every browser already, as if each had signed in before.
    bool isEverybodyKnown = false;
    /// Sessions from single sign-on see the sign-in page instead of offers; only those from a
    /// password see offers.
    bool isSsoWithoutOffers = false;
};

/// The site refuses once by itself: too many requests.
struct Refusal {
    /// The request for a page's own leg that follows so many answered ones is refused with status
    /// 429, and so is every request for offers, neighbouring days included, until `retryAfter` has
    /// passed since then. Pages are shown meanwhile.
    int afterOffers = 0;
    std::chrono::seconds retryAfter{60}; ///< the Retry-After header
    /// Counts an answer only when its leg was answered before in this process.
    bool countsRepeatsOnly = false;
};

/// How a stand-in site is set up.
struct Options {
    quint16 port = 0;                         ///< 0 takes a free one
    quint64 seed = 1;                         ///< of the timetable and the award seats
    std::chrono::milliseconds pageDelay{150}; ///< from a page's load to its offer request
    QString stateFile{};         ///< keeps looks and sessions between runs; empty: nowhere
    qsizetype responseBytes = 0; ///< pads offer answers to about this size; 0: natural
    SignInOptions signIn{};
    std::optional<Refusal> refusal{}; ///< absent: never
    /// Seconds since 1970-01-01 00:00 UTC, for the ends of sessions and of a refusal; called on
    /// the server's thread.
    std::function<qint64()> now = QDateTime::currentSecsSinceEpoch;
};

} // namespace standin
