// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Fare.h"

#include <QList>
#include <QString>

/// What became of one look at the site.
struct Outcome {
    enum class Kind {
        /// The site said which flights it offers for the leg, or that there are none. Nothing else
        /// confirms the session, counts as looked at, or can sell anything out.
        answer,
        /// The site asks to be left alone.
        refused,
        /// The site answered, but with an error or with something that is no answer.
        failed,
        /// No page came at all: there is no network, or the site is down.
        unreachable,
        /// The page landed at the identity provider, asks to sign in, or its request was told so.
        signedOut,
        /// A page came, but no answer within the time.
        silent,
    };

    Kind kind = Kind::silent;
    /// HTTP status of the response or page that decided; 0 where there was none.
    int status = 0;
    /// How long the site asks to be left alone, as it spells it; empty where it does not say.
    QString retryAfter{};
    /// What an answer offers.
    QList<Fare> fares{};

    bool operator==(const Outcome&) const = default;
};
