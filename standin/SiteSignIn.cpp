// SPDX-License-Identifier: MIT
#include "standin/SiteSignIn.h"

namespace standin {
namespace {

constexpr qsizetype flowLimit = 1000;

QString item(const HttpRequest& request, const char* name) {
    return request.query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
}

// Only to the site itself: "//host" and "/\host" would lead elsewhere.
QString safePath(const QString& wanted) {
    const bool isOwn = wanted.startsWith(u'/') && !wanted.startsWith(u"//") &&
                       !wanted.contains(u'\\') && !wanted.contains(u'\r') &&
                       !wanted.contains(u'\n');
    return isOwn ? wanted : QStringLiteral("/");
}

} // namespace

SiteSignIn::SiteSignIn(const Options& options, const Origins& origins, IdentityProvider& provider)
    : m_options(options), m_origins(origins), m_provider(provider) {}

HttpResponse SiteSignIn::answer(const HttpRequest& request) {
    if (request.path == u"/auth/login")
        return login(request);
    if (request.path == u"/auth/callback")
        return callback(request);
    return notFound();
}

HttpResponse SiteSignIn::login(const HttpRequest& request) {
    if (m_returnTo.size() >= flowLimit)
        m_returnTo.clear();
    const QByteArray state = randomToken();
    m_returnTo.insert(QString::fromLatin1(state), safePath(item(request, "returnTo")));
    const QUrlQuery query{
        {QStringLiteral("client_id"), QStringLiteral("standin")},
        {QStringLiteral("response_type"), QStringLiteral("code")},
        {QStringLiteral("scope"), QStringLiteral("openid%20profile")},
        {QStringLiteral("redirect_uri"), QString::fromLatin1(QUrl::toPercentEncoding(
                                             m_origins.site + QStringLiteral("/auth/callback")))},
        {QStringLiteral("ui_locales"), QStringLiteral("nb")},
        {QStringLiteral("state"), QString::fromLatin1(state)}};
    HttpResponse response = redirect(m_origins.idp + QStringLiteral("/authorize?") +
                                     query.toString(QUrl::FullyEncoded));
    setCookie(response, "auth_state", state, "Path=/auth; HttpOnly; SameSite=Lax; Max-Age=3600");
    return response;
}

HttpResponse SiteSignIn::callback(const HttpRequest& request) {
    const QString state = item(request, "state");
    const auto wanted = m_returnTo.constFind(state);
    const bool isOurs =
        wanted != m_returnTo.constEnd() && request.cookies.value("auth_state") == state.toLatin1();
    const auto grant = isOurs ? m_provider.redeem(item(request, "code")) : std::nullopt;
    if (!grant)
        return page(QStringLiteral("autherror.html"), {}, 400);
    HttpResponse response = redirect(m_origins.site + *wanted);
    m_returnTo.erase(wanted);
    const QByteArray token =
        m_sessions.open(m_options.now(), m_options.signIn.siteSession, grant->isSilent);
    setCookie(response, "session", token, "Path=/; HttpOnly; SameSite=Lax");
    setCookie(response, "auth_state", "", "Path=/auth; Max-Age=0");
    return response;
}

const Sessions::Session* SiteSignIn::session(const HttpRequest& request) const {
    return m_sessions.find(request.cookies.value("session"), m_options.now());
}

bool SiteSignIn::isSignedIn(const HttpRequest& request) const {
    return session(request) != nullptr;
}

bool SiteSignIn::maySeeOffers(const HttpRequest& request) const {
    const SignInOptions& signIn = m_options.signIn;
    if (!signIn.isRequired)
        return true;
    const Sessions::Session* own = session(request);
    return own && !(own->isSilent && signIn.isSsoWithoutOffers);
}

} // namespace standin
