// SPDX-License-Identifier: MIT
#include "platform/linux/NetworkSession.h"

#include "platform/Clock.h"

#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QPointer>

namespace {

constexpr int mostRedirects = 5;

/// A jar that stays empty: nothing may tell one request's sender from another's.
class NoCookies final : public QNetworkCookieJar {
public:
    using QNetworkCookieJar::QNetworkCookieJar;
    bool setCookiesFromUrl(const QList<QNetworkCookie>&, const QUrl&) override { return false; }
};

QNetworkRequest networkRequest(const HttpRequest& request) {
    QNetworkRequest result(request.url);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::UserVerifiedRedirectPolicy);
    result.setMaximumRedirectsAllowed(mostRedirects);
    result.setRawHeader("User-Agent", "Tindra/" TINDRA_VERSION);
    // A compressed answer could grow without a limit while it is unpacked.
    result.setRawHeader("Accept-Encoding", "identity");
    if (request.method == HttpRequest::Method::post)
        result.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/json"));
    return result;
}

/// An answer with an error status is an answer; anything else that failed is not, nor is a
/// redirect that was not followed, which has its own status or that of nothing yet.
bool isWhole(const QNetworkReply& reply, int status) {
    constexpr int firstSuccess = 200;
    constexpr int firstRedirect = 300;
    constexpr int firstError = 400;
    const bool isSuccess = status >= firstSuccess && status < firstRedirect;
    return status >= firstError || (isSuccess && reply.error() == QNetworkReply::NoError);
}

} // namespace

NetworkSession::NetworkSession(Clock& clock) : m_clock(clock) {
    m_network.setCookieJar(new NoCookies(&m_network));
}

QCoro::Task<std::optional<HttpResponse>> NetworkSession::send(HttpRequest request) {
    const QNetworkRequest outgoing = networkRequest(request);
    // The session may end, and its replies with it, while one of them is awaited.
    const QPointer reply(request.method == HttpRequest::Method::post
                             ? m_network.post(outgoing, request.body)
                             : m_network.get(outgoing));
    reply->setReadBufferSize(request.largestBody + 1);

    const OneShot<bool> end;
    QByteArray body;
    QObject::connect(reply, &QNetworkReply::redirected, reply,
                     [reply, end, scheme = request.url.scheme()](const QUrl& target) {
                         if (target.scheme() == scheme)
                             Q_EMIT reply->redirectAllowed();
                         else
                             end.resolve(false);
                     });
    QObject::connect(reply, &QNetworkReply::readyRead, reply,
                     [reply, end, &body, most = request.largestBody] {
                         body += reply->readAll();
                         if (body.size() > most)
                             end.resolve(false);
                     });
    QObject::connect(reply, &QNetworkReply::finished, reply, [end] { end.resolve(true); });
    QObject::connect(reply, &QObject::destroyed, [end] { end.resolve(false); });
    const auto timer = m_clock.after(request.timeout, [end] { end.resolve(false); });
    const bool finished = co_await end;

    std::optional<HttpResponse> response;
    if (!reply)
        co_return response;
    reply->disconnect();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!finished)
        reply->abort();
    else if (isWhole(*reply, status) && body.size() <= request.largestBody)
        response = HttpResponse{status, std::move(body)};
    reply->deleteLater();
    co_return response;
}
