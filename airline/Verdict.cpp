// SPDX-License-Identifier: MIT
#include "airline/Verdict.h"

#include "airline/OfferParser.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Kind = Outcome::Kind;

/// Longer bodies are not error messages.
constexpr qsizetype longestMessage = 16 * 1024;

bool isRefusal(int status) {
    return status == 403 || status == 429 || status == 503;
}

bool isSuccess(int status) {
    return status >= 200 && status < 300;
}

} // namespace

namespace Verdict {

Outcome ofResponse(const Response& response, const Leg& leg, OfferParser& parser) {
    Outcome outcome{Kind::failed, response.status, response.retryAfter};
    if (response.status == 0) {
        outcome.kind = Kind::silent;
    } else if (response.status == 401) {
        outcome.kind = Kind::signedOut;
    } else if (isRefusal(response.status)) {
        outcome.kind = Kind::refused;
    } else if (isSuccess(response.status)) {
        if (auto fares = parser.parse(response.body, leg)) {
            outcome.kind = Kind::answer;
            outcome.fares = std::move(*fares);
        } else if (response.body.size() <= longestMessage &&
                   saysRefused(QString::fromUtf8(response.body))) {
            outcome.kind = Kind::refused;
        }
    }
    return outcome;
}

std::optional<Outcome> ofPage(int status, const QString& retryAfter) {
    if (status == 401)
        return Outcome{Kind::signedOut, status};
    if (isRefusal(status))
        return Outcome{Kind::refused, status, retryAfter};
    if (status >= 400)
        return Outcome{Kind::failed, status};
    return std::nullopt;
}

bool saysRefused(const QString& text) {
    static constexpr std::array phrases{
        u"too many requests", u"access denied",        u"rate limit",
        u"unusual traffic",   u"for mange foresp",     u"request blocked",
        u"are you a robot",   u"pardon our interrupt", u"temporarily blocked"};
    return std::any_of(phrases.begin(), phrases.end(), [&text](const char16_t* phrase) {
        return text.contains(QStringView(phrase), Qt::CaseInsensitive);
    });
}

} // namespace Verdict
