// SPDX-License-Identifier: MIT
#include "sharing/Community.h"

#include "core/Settings.h"
#include "sharing/CommunityFind.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace {

/// The service takes no more in one request.
constexpr qsizetype findsPerRequest = 200;
/// Finds that are read of one answer.
constexpr qsizetype mostFinds = 5000;
/// Finds read in one turn of the event loop, so that a long answer holds nobody up.
constexpr qsizetype findsReadPerTurn = 200;
constexpr int ok = 200;

QUrl address(QUrl base, const QString& path) {
    QString whole = base.path();
    if (!whole.endsWith(u'/'))
        whole += u'/';
    base.setPath(whole + path);
    return base;
}

} // namespace

Community::Community(const Settings& settings, HttpSession& session, Clock& clock, Site site,
                     QString builtInBase)
    : m_settings(settings)
    , m_session(session)
    , m_clock(clock)
    , m_site(std::move(site))
    , m_builtInBase(std::move(builtInBase)) {}

QString Community::builtInBaseAddress() {
    return QStringLiteral(TINDRA_COMMUNITY_URL);
}

bool Community::isSharing() const {
    return m_settings.isOn(Setting::shareHits);
}

/// Absent when the address makes no sense or is a reserved one that leads nowhere; then nothing is
/// sent.
std::optional<QUrl> Community::base() const {
    const QUrl url(m_settings.text(Setting::communityUrl).value_or(m_builtInBase).trimmed(),
                   QUrl::StrictMode);
    const bool isHttp = url.scheme() == u"https" || url.scheme() == u"http";
    const bool leadsNowhere = url.host().isEmpty() || url.host().endsWith(u".invalid");
    if (!url.isValid() || !isHttp || leadsNowhere)
        return std::nullopt;
    return url.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::RemoveUserInfo);
}

QCoro::Task<std::optional<FoundByOthers>> Community::fetchHits(QList<Route> routes) {
    const QPointer self(this);
    std::optional<FoundByOthers> found;
    const auto base = this->base();
    if (!isSharing() || !base || routes.isEmpty())
        co_return found;
    HttpRequest request;
    request.url = address(*base, u"v1/hits"_s);
    QUrlQuery query;
    QStringList texts;
    for (const Route& route : routes.first(std::min(routes.size(), mostRoutes)))
        texts.append(route.text());
    query.addQueryItem(u"routes"_s, texts.join(u','));
    request.url.setQuery(query);
    const auto response = co_await m_session.send(request);
    if (!self || !response || response->status != ok)
        co_return found;
    const auto answer = CommunityFind::read(response->body);
    if (!answer)
        co_return found;
    found.emplace();
    found->isWhole = answer->isWhole && answer->finds.size() <= mostFinds;
    for (qsizetype i = 0; i < std::min(answer->finds.size(), mostFinds); ++i) {
        auto match = CommunityFind::fromJson(answer->finds.at(i), m_clock.now());
        if (match && !m_site.bookingAddress(match->bookingURL))
            match->bookingURL.clear();
        if (match)
            found->hits.append(std::move(*match));
        if (i % findsReadPerTurn == findsReadPerTurn - 1)
            co_await nextTurn();
        if (!self)
            co_return found;
    }
    co_return found;
}

QCoro::Task<> Community::report(QList<Match> matches) {
    const QPointer self(this);
    const auto base = this->base();
    if (!isSharing() || !base)
        co_return;
    matches.removeIf([](const Match& match) { return !CommunityFind::isShareable(match); });
    while (!matches.isEmpty()) {
        QJsonArray finds;
        while (!matches.isEmpty() && finds.size() < findsPerRequest)
            finds.append(CommunityFind::toJson(matches.takeFirst()));
        const QJsonObject body{{u"hits"_s, finds}};
        co_await post(u"v1/hits"_s, body, *base);
        if (!self)
            co_return;
    }
}

QCoro::Task<> Community::reportSoldOut(FareKey key, CabinSet cabins) {
    const QPointer self(this);
    const auto base = this->base();
    if (!isSharing() || !base)
        co_return;
    for (const Cabin cabin : cabins) {
        const QJsonObject body{{u"key"_s, key.text()}, {u"cabin"_s, rawValue(cabin)}};
        co_await post(u"v1/soldout"_s, body, *base);
        if (!self)
            co_return;
    }
}

QCoro::Task<> Community::post(QString path, QJsonObject body, QUrl base) {
    HttpRequest request;
    request.method = HttpRequest::Method::post;
    request.url = address(base, path);
    request.body = QJsonDocument(body).toJson(QJsonDocument::Compact);
    co_await m_session.send(request);
}
