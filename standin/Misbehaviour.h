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
        Slow,      ///< answers after `delay`
        Never,     ///< never answers
        Error,     ///< status 500 with an HTML page
        Malformed, ///< status 200, JSON that ends too early
        Huge,      ///< 17 MiB of valid JSON that holds the real offers too
        CutOff,    ///< the connection breaks in the middle of the body
        Nested,    ///< lists nested 10,000 deep
        SignIn     ///< the search page asks the visitor to sign in and requests no offers
    };

    Kind kind = Kind::None;
    std::chrono::milliseconds delay{2000}; ///< of Slow

    /// Reads "slow", "slow:500", "never", "status500", "malformed", "huge", "cutoff", "nested",
    /// "signin" or "none"; absent when it is none of these.
    static std::optional<Misbehaviour> of(const QString& text);

    /// The words that of() reads.
    static QStringList words();

    bool operator==(const Misbehaviour&) const = default;
};

} // namespace standin
