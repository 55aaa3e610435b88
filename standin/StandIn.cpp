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
    const Options options;
    Origins origins;
    quint16 port = 0;
    StateFile stateFile;
    Site site;
    std::deque<std::pair<QString, QString>> log; // host, request
    mutable std::mutex mutex;                    // guards all of the above
    HttpServer server;

    explicit Private(Options o)
        : options(std::move(o))
        , stateFile(options.stateFile)
        , site(options, origins)
        , server([this](const HttpRequest& request) { return answer(request); }) {}

    HttpResponse answer(const HttpRequest& request);
    HttpResponse dispatch(const HttpRequest& request);
};

HttpResponse StandIn::Private::answer(const HttpRequest& request) {
    const std::scoped_lock lock(mutex);
    log.emplace_back(request.host, QString::fromLatin1(request.method) + u' ' + request.target);
    if (log.size() > logLimit)
        log.pop_front();
    HttpResponse response = dispatch(request);
    if (site.stateChanged()) {
        if (const auto error = stateFile.save(site.state()))
            qWarning("%s", qUtf8Printable(*error));
    }
    return response;
}

HttpResponse StandIn::Private::dispatch(const HttpRequest& request) {
    if (request.host == siteDomain())
        return site.answer(request);
    if (request.host == adsHost())
        return answerOfAds(request);
    return notFound();
}

StandIn::StandIn(Options options) : d(std::make_unique<Private>(std::move(options))) {}

StandIn::~StandIn() = default;

std::optional<QString> StandIn::start() {
    const std::scoped_lock lock(d->mutex); // no request is answered before the origins are known
    QJsonObject state;
    if (const auto error = d->stateFile.load(state))
        return error;
    if (const auto error = d->server.start(d->options.port))
        return error;
    d->site.restore(state);
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

Counters StandIn::counters() const {
    const std::scoped_lock lock(d->mutex);
    return d->site.counters();
}

} // namespace standin
