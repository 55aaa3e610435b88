// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace standin {

/// What the site does wrong when it is asked for the offers of a leg.
struct Misbehaviour {
    enum class Kind {
        None,
        // The offer endpoints, which are asked by the search page's script:
        Slow,       ///< answers after `delay`
        Never,      ///< never answers
        Error,      ///< status 500 with an HTML page
        Malformed,  ///< status 200, JSON that ends too early
        Huge,       ///< 17 MiB of valid JSON that holds the real offers too
        CutOff,     ///< the connection breaks in the middle of the body
        Nested,     ///< lists nested 10,000 deep
        Errors,     ///< status 200, an `errors` list about a failure inside the site
        Message,    ///< status 200, a `message` that tells of too many requests
        WrongShape, ///< status 200, a text where the flights belong
        Status,     ///< `status` with a small JSON body, and `retryAfter`
        Twice,      ///< status 500 for the first request after a page load, then the offers
        Alternate,  ///< every second request is refused: status 429, to be tried again in 60 s
        // The search page, which then has no script that requests offers:
        SignIn,     ///< asks the visitor to sign in, on the site itself
        PageStatus, ///< `status` with a small HTML page, and `retryAfter`
        Denied,     ///< status 200, a page that says "Access Denied"
        Idp,        ///< redirects to the identity provider's form, also whom that one knows
        Hang,       ///< never answers
        Redirects   ///< redirects to itself for ever
    };

    Kind kind = Kind::None;
    std::chrono::milliseconds delay{2000}; ///< of Slow
    int status = 0;                        ///< of Status and PageStatus, 200 to 599
    /// The Retry-After header of Status and PageStatus, sent as it is; without line breaks. Absent:
    /// no such header.
    std::optional<QString> retryAfter{};

    /// Reads one of words(), with "slow:500" for a delay, "status:429" or "page:503" for a status,
    /// "status:429:TEXT" for one with a Retry-After of any text; "unauthorized" is "status:401".
    /// Absent when it is none of these.
    static std::optional<Misbehaviour> of(const QString& text);

    /// The forms that of() reads; NNN is a status, TEXT any text, what may be left out is in
    /// brackets.
    static QStringList words();

    bool operator==(const Misbehaviour&) const = default;
};

} // namespace standin
