// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Leg.h"
#include "airline/Outcome.h"

#include <QByteArray>

#include <optional>

class OfferParser;

/// What a response or a page of the site means. Pure functions.
namespace Verdict {

/// One response of an offer endpoint, as the page's scripts got it.
struct Response {
    /// 0 where the request broke before its answer, as one does that is sent on to another site.
    int status = 0;
    QString retryAfter{};
    /// UTF-8; empty when it was larger than `largestBody`.
    QByteArray body{};
};

/// Only a 2xx response with flights in the shape of the leg's flow is an answer.
Outcome ofResponse(const Response& response, const Leg& leg, OfferParser& parser);

/// A page that came with this status; absent when it may still ask for offers.
std::optional<Outcome> ofPage(int status, const QString& retryAfter);

/// Whether a short text of the site, such as a title or an error message, asks to be left alone.
bool saysRefused(const QString& text);

} // namespace Verdict
