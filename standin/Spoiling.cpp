// SPDX-License-Identifier: MIT
#include "standin/Spoiling.h"

#include "standin/Pages.h"

namespace standin {
namespace {

using Kind = Misbehaviour::Kind;

HttpResponse withStatus(HttpResponse response, const Misbehaviour& misbehaviour) {
    // These two have no body.
    if (misbehaviour.status == 204 || misbehaviour.status == 304)
        response.body.clear();
    if (misbehaviour.retryAfter)
        response.headers.append({"Retry-After", misbehaviour.retryAfter->toUtf8()});
    return response;
}

} // namespace

HttpResponse spoiltAnswer(HttpResponse good, const Misbehaviour& misbehaviour) {
    switch (misbehaviour.kind) {
    case Kind::Slow:
        good.delay = misbehaviour.delay;
        break;
    case Kind::Never:
        good.delivery = HttpResponse::Delivery::Never;
        break;
    case Kind::Error:
        return page(QStringLiteral("error.html"), {}, 500);
    case Kind::Malformed:
        good.body.truncate(good.body.size() / 2);
        break;
    case Kind::Huge:
        good.body.chop(1);
        good.body += R"(,"notes":")" + QByteArray(17 * 1024 * 1024, 'x') + R"("})";
        break;
    case Kind::CutOff:
        good.delivery = HttpResponse::Delivery::CutOff;
        break;
    case Kind::Nested:
        good.body =
            R"({"outboundFlights":)" + QByteArray(10'000, '[') + QByteArray(10'000, ']') + '}';
        break;
    case Kind::Errors:
        return json(R"({"errors":[{"code":"INTERNAL_ERROR",)"
                    R"("message":"The fares of this journey could not be priced."}]})");
    case Kind::Message:
        return json(R"({"message":"Too many requests"})");
    case Kind::WrongShape:
        return json(R"({"outboundFlights":"none"})");
    case Kind::Status:
        return withStatus(json(R"({"status":)" + QByteArray::number(misbehaviour.status) + '}',
                               misbehaviour.status),
                          misbehaviour);
    case Kind::None:
    case Kind::Twice:
    case Kind::Alternate:
    case Kind::SignIn:
    case Kind::PageStatus:
    case Kind::Denied:
    case Kind::Idp:
    case Kind::Hang:
    case Kind::Redirects:
        break;
    }
    return good;
}

std::optional<HttpResponse> spoiltPage(const Misbehaviour& misbehaviour) {
    if (misbehaviour.kind == Kind::PageStatus)
        return withStatus(page(QStringLiteral("status.html"),
                               {{QStringLiteral("status"), QString::number(misbehaviour.status)}},
                               misbehaviour.status),
                          misbehaviour);
    if (misbehaviour.kind == Kind::Denied)
        return page(QStringLiteral("denied.html"));
    if (misbehaviour.kind == Kind::Hang) {
        HttpResponse nothing;
        nothing.delivery = HttpResponse::Delivery::Never;
        return nothing;
    }
    return std::nullopt;
}

} // namespace standin
