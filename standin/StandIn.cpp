// SPDX-License-Identifier: MIT
#include "standin/StandIn.h"

#include "standin/Ads.h"
#include "standin/Site.h"
#include "standin/StateFile.h"

#include <deque>
#include <mutex>

namespace standin {
namespace {

constexpr std::size_t logLimit = 10'000;

} // namespace

struct StandIn::Private {
    Options options;
    Origins origins;
    quint16 port = 0;
    StateFile stateFile;
    Counters counters;
    IdentityProvider provider;
    SiteSignIn signIn;
    Site site;
    QJsonObject savedState;
    std::deque<std::pair<QString, QString>> log; // host, request
    mutable std::mutex mutex;                    // guards all of the above
    HttpServer server;

    explicit Private(Options o)
        : options(std::move(o))
        , stateFile(options.stateFile)
        , provider(options, origins, counters)
        , signIn(options, origins, provider)
        , site(options, origins, signIn, counters)
        , server([this](const HttpRequest& request) { return answer(request); }) {}

    HttpResponse answer(const HttpRequest& request);
    HttpResponse dispatch(const HttpRequest& request);
    bool saveFailed = false;
    void saveState();
    void restoreState();
};

HttpResponse StandIn::Private::answer(const HttpRequest& request) {
    const std::scoped_lock lock(mutex);
    log.emplace_back(request.host, QString::fromLatin1(request.method) + u' ' + request.target);
    if (log.size() > logLimit)
        log.pop_front();
    HttpResponse response = dispatch(request);
    saveState();
    if (response.sent) {
        response.sent = [this, noted = std::move(response.sent)](auto when) {
            const std::scoped_lock again(mutex);
            noted(when);
        };
    }
    return response;
}

void StandIn::Private::saveState() {
    if (options.stateFile.isEmpty())
        return;
    const QJsonObject state{{QStringLiteral("looks"), site.state()},
                            {QStringLiteral("siteSessions"), signIn.state()},
                            {QStringLiteral("ssoSessions"), provider.state()}};
    if (state == savedState)
        return;
    const auto error = stateFile.save(state);
    if (error && !std::exchange(saveFailed, true))
        qWarning("%s", qUtf8Printable(*error));
    savedState = state;
}

void StandIn::Private::restoreState() {
    site.restore(savedState[u"looks"].toObject());
    signIn.restore(savedState[u"siteSessions"].toObject());
    provider.restore(savedState[u"ssoSessions"].toObject());
}

HttpResponse StandIn::Private::dispatch(const HttpRequest& request) {
    if (request.host == siteDomain())
        return site.answer(request);
    if (request.host == adsHost())
        return answerOfAds(request);
    if (request.host == idpHost())
        return provider.answer(request);
    return notFound();
}

StandIn::StandIn(Options options) : d(std::make_unique<Private>(std::move(options))) {}

StandIn::~StandIn() = default;

std::optional<QString> StandIn::start() {
    const std::scoped_lock lock(d->mutex); // no request is answered before the origins are known
    if (const auto error = d->stateFile.load(d->savedState))
        return error;
    if (const auto error = d->server.start(d->port ? d->port : d->options.port))
        return error;
    d->restoreState();
    d->port = d->server.port();
    const auto origin = [this](const QString& host) {
        return QStringLiteral("http://%1:%2").arg(host).arg(d->port);
    };
    d->origins = {origin(siteDomain()), origin(idpHost()), origin(adsHost())};
    return std::nullopt;
}

void StandIn::stop() {
    d->server.stop();
}

quint16 StandIn::port() const {
    const std::scoped_lock lock(d->mutex);
    return d->port;
}

QString StandIn::siteOrigin() const {
    const std::scoped_lock lock(d->mutex);
    return d->origins.site;
}

void StandIn::misbehave(const QString& leg, const Misbehaviour& misbehaviour) {
    const std::scoped_lock lock(d->mutex);
    d->site.misbehave(leg, misbehaviour);
}

QStringList StandIn::requests(const QString& host) const {
    const std::scoped_lock lock(d->mutex);
    QStringList result;
    for (const auto& [asked, request] : d->log) {
        if (asked == host)
            result.append(request);
    }
    return result;
}

int StandIn::looks(const QString& leg) const {
    const std::scoped_lock lock(d->mutex);
    return d->site.looks(leg);
}

std::optional<std::chrono::steady_clock::time_point> StandIn::answeredAt(const QString& leg) const {
    const std::scoped_lock lock(d->mutex);
    return d->site.answeredAt(leg);
}

Counters StandIn::counters() const {
    const std::scoped_lock lock(d->mutex);
    return d->counters;
}

void StandIn::setSignIn(const SignInOptions& options) {
    const std::scoped_lock lock(d->mutex);
    d->options.signIn = options;
}

void StandIn::expireSiteSession() {
    const std::scoped_lock lock(d->mutex);
    d->signIn.expireSessions();
    d->saveState();
}

void StandIn::expireSso() {
    const std::scoped_lock lock(d->mutex);
    d->provider.expireSso();
    d->saveState();
}

QString StandIn::lastUser() const {
    const std::scoped_lock lock(d->mutex);
    return d->provider.lastUser();
}

QString StandIn::lastPassword() const {
    const std::scoped_lock lock(d->mutex);
    return d->provider.lastPassword();
}

} // namespace standin
