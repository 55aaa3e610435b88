// SPDX-License-Identifier: MIT
#include "standin/Ads.h"

#include "standin/Pages.h"

namespace standin {
namespace {

HttpResponse pixel() {
    // The smallest transparent GIF picture.
    HttpResponse response;
    response.headers = {{"Content-Type", "image/gif"}, {"Cache-Control", "no-store"}};
    response.body =
        QByteArray::fromBase64("R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7");
    setCookie(response, "MUID", randomToken(), "Path=/; Max-Age=31536000");
    return response;
}

} // namespace

HttpResponse answerOfAds(const HttpRequest& request) {
    if (request.path == u"/frame.html")
        return page(QStringLiteral("adframe.html"));
    if (request.path == u"/tracker.js" || request.path == u"/adframe.js")
        return asset(request.path.sliced(1)).value();
    if (request.path == u"/pixel.gif")
        return pixel();
    if (request.path == u"/api/offers/flights" || request.path == u"/award-api/flights")
        return json(asset(QStringLiteral("lie.json")).value().body);
    return notFound();
}

} // namespace standin
