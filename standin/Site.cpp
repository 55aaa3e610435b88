// SPDX-License-Identifier: MIT
#include "standin/Site.h"

#include "standin/Answers.h"
#include "standin/Fields.h"
#include "standin/Spoiling.h"

#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace standin {

using namespace std::chrono_literals;

namespace {

using Kind = Misbehaviour::Kind;

std::optional<Leg> legOf(const HttpRequest& request, const char* origin, const char* destination,
                         const char* date) {
    return Leg::of(queryItem(request, origin), queryItem(request, destination),
                   queryItem(request, date));
}

// "OW_OSL-BKK-20270301_a1c0i0y0": one way, the leg, the number of travellers of each age.
std::optional<Leg> legOfSearch(const HttpRequest& request) {
    static const QRegularExpression form(
        QStringLiteral("^OW_([A-Za-z]{3}-[A-Za-z]{3}-\\d{8})_a\\d+c\\d+i\\d+y\\d+\\z"));
    const QRegularExpressionMatch match = form.match(queryItem(request, "search"));
    return match.hasMatch() ? Leg::fromKey(match.captured(1)) : std::nullopt;
}

Misbehaviour tooManyRequests(std::chrono::seconds retryAfter) {
    return {.kind = Kind::Status, .status = 429, .retryAfter = QString::number(retryAfter.count())};
}

// No browser can use it as a font; it is here to be loaded, or to be kept from loading.
HttpResponse webFont() {
    HttpResponse response;
    response.headers = {{"Content-Type", "font/woff2"}, {"Cache-Control", "max-age=3600"}};
    response.body = "wOF2" + QByteArray(20'000, '\0');
    return response;
}

} // namespace

Site::Site(const Options& options, const Origins& origins, SiteSignIn& signIn, Counters& counters)
    : m_options(options)
    , m_origins(origins)
    , m_signIn(signIn)
    , m_counters(counters)
    , m_inventory(options.seed)
    , m_refusal(options) {}

HttpResponse Site::answer(const HttpRequest& request) {
    const QString& path = request.path;
    if (path == u"/book/flights/" || path == u"/book/flights")
        return searchPage(request, legOfSearch(request));
    if (path == u"/booking/award/flights")
        return searchPage(request, legOf(request, "origin", "destination", "outboundDate"));
    if (path == u"/api/offers/flights")
        return offers(request, legOf(request, "from", "to", "outDate"), false);
    if (path == u"/award-api/flights")
        return offers(request, legOf(request, "origin", "destination", "outboundDate"), true);
    if (path.startsWith(u"/auth/"))
        return m_signIn.answer(request);
    if (path == u"/")
        return htmlPage(request, QStringLiteral("start.html"));
    if (path == u"/assets/sans.woff2")
        return webFont();
    if (path.startsWith(u"/assets/")) {
        if (const auto found = asset(path.sliced(8)))
            return *found;
    }
    return notFound();
}

HttpResponse Site::searchPage(const HttpRequest& request, const std::optional<Leg>& leg) {
    if (!leg)
        return page(QStringLiteral("badsearch.html"), {}, 400);
    const Misbehaviour misbehaviour = misbehaviourAt(*leg);
    if (const auto spoilt = spoiltPage(misbehaviour))
        return *spoilt;
    if (misbehaviour.kind == Kind::Redirects)
        return redirect(m_origins.site + request.target);
    if (misbehaviour.kind == Kind::Idp) {
        ++m_counters.signInPages;
        return m_signIn.toForm(request.target);
    }
    if (!m_signIn.maySeeOffers(request) || misbehaviour.kind == Kind::SignIn) {
        ++m_counters.signInPages;
        return htmlPage(request, QStringLiteral("signin.html"));
    }
    ++m_looks[leg->key()];
    ++m_counters.searchPages;
    return htmlPage(request, QStringLiteral("search.html"));
}

HttpResponse Site::htmlPage(const HttpRequest& request, const QString& name) const {
    const QString account =
        m_signIn.isSignedIn(request) ? m_options.signIn.user : QStringLiteral("Logg inn");
    HttpResponse response =
        page(name, {{QStringLiteral("ads"), m_origins.ads},
                    {QStringLiteral("account"), account},
                    {QStringLiteral("delay"), QString::number(m_options.pageDelay.count())}});
    setVisitorCookies(response, request);
    return response;
}

HttpResponse Site::offers(const HttpRequest& request, const std::optional<Leg>& leg, bool award) {
    if (!leg)
        return json(R"({"error":"invalid search"})", 400);
    const bool isOwnLeg = !request.query.hasQueryItem(QStringLiteral("calendar"));
    if (m_refusal.refuses(isOwnLeg)) {
        ++m_counters.refused;
        return spoiltAnswer({}, tooManyRequests(m_options.refusal->retryAfter));
    }
    if (!m_signIn.maySeeOffers(request))
        return json(R"({"error":"not signed in"})", 401);
    const QString key = leg->key();
    const QList<Flight> flights = m_inventory.flights(*leg, std::max(1, looks(key)));
    HttpResponse good = json(award ? awardAnswer(flights, m_options.responseBytes)
                                   : offersAnswer(flights, m_options.responseBytes));
    if (!isOwnLeg) {
        ++m_counters.calendar;
        return good;
    }
    ++m_counters.offers;
    HttpResponse response = spoiltAnswer(std::move(good), misbehaviourOfAnswer(*leg));
    if (response.status == 200)
        m_refusal.count(key);
    response.sent = [this, key](auto when) { m_answeredAt.insert(key, when); };
    return response;
}

QString Site::patternOf(const Leg& leg) const {
    return m_misbehaviours.contains(leg.key()) ? leg.key() : QStringLiteral("*");
}

Misbehaviour Site::misbehaviourAt(const Leg& leg) const {
    return m_misbehaviours.value(patternOf(leg));
}

Misbehaviour Site::misbehaviourOfAnswer(const Leg& leg) {
    const Misbehaviour misbehaviour = misbehaviourAt(leg);
    if (misbehaviour.kind == Kind::Alternate)
        return ++m_alternations[patternOf(leg)] % 2 ? Misbehaviour() : tooManyRequests(60s);
    if (misbehaviour.kind == Kind::Twice) {
        const int look = looks(leg.key());
        if (std::exchange(m_failedLooks[leg.key()], look + 1) <= look)
            return {.kind = Kind::Status, .status = 500};
    }
    return misbehaviour;
}

void Site::misbehave(const QString& leg, const Misbehaviour& misbehaviour) {
    m_misbehaviours.insert(leg, misbehaviour);
    m_alternations.remove(leg);
}

void Site::setVisitorCookies(HttpResponse& response, const HttpRequest& request) const {
    if (!request.cookies.contains("session"))
        setCookie(response, "session", randomToken(), "Path=/; HttpOnly; SameSite=Lax");
    if (!request.cookies.contains("visitor"))
        setCookie(response, "visitor", randomToken(),
                  "Domain=site.localhost; Path=/; Max-Age=31536000; SameSite=Lax");
    if (!request.cookies.contains("_gcl_au"))
        setCookie(response, "_gcl_au", "1.1." + randomToken().first(10),
                  "Domain=site.localhost; Path=/; Max-Age=7776000");
}

std::optional<std::chrono::steady_clock::time_point> Site::answeredAt(const QString& leg) const {
    const auto it = m_answeredAt.constFind(leg);
    return it == m_answeredAt.constEnd() ? std::nullopt : std::optional(*it);
}

QJsonObject Site::state() const {
    QJsonObject looks;
    for (auto it = m_looks.cbegin(); it != m_looks.cend(); ++it)
        looks.insert(it.key(), it.value());
    return looks;
}

void Site::restore(const QJsonObject& state) {
    for (auto it = state.begin(); it != state.end(); ++it)
        m_looks.insert(it.key(), std::max(0, it.value().toInt()));
}

} // namespace standin
