// SPDX-License-Identifier: MIT
#include "standin/SiteSignIn.h"

#include "standin/Fields.h"

namespace standin {
namespace {

constexpr qsizetype returnLimit = 1000;

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
    const QString returnTo = safePath(queryItem(request, "returnTo"));
    if (request.method != "POST")
        return toProvider(returnTo, false);
    // From the form on the site itself, which knows no second try: that is the provider's.
    return m_provider.accepts(formField(request, "username"), formField(request, "password"))
               ? signedIn(returnTo, false)
               : toProvider(returnTo, true);
}

HttpResponse SiteSignIn::toForm(const QString& returnTo) {
    return toProvider(safePath(returnTo), true);
}

HttpResponse SiteSignIn::toProvider(const QString& returnTo, bool asksEverybody) {
    if (m_returnTo.size() >= returnLimit)
        m_returnTo.clear();
    const QByteArray state = randomToken();
    m_returnTo.insert(QString::fromLatin1(state), returnTo);
    QUrlQuery query{
        {QStringLiteral("client_id"), QStringLiteral("standin")},
        {QStringLiteral("response_type"), QStringLiteral("code")},
        {QStringLiteral("scope"), QStringLiteral("openid%20profile")},
        {QStringLiteral("redirect_uri"), QString::fromLatin1(QUrl::toPercentEncoding(
                                             m_origins.site + QStringLiteral("/auth/callback")))},
        {QStringLiteral("ui_locales"), QStringLiteral("nb")},
        {QStringLiteral("state"), QString::fromLatin1(state)}};
    if (asksEverybody)
        query.addQueryItem(QStringLiteral("prompt"), QStringLiteral("login"));
    HttpResponse response = redirect(m_origins.idp + QStringLiteral("/authorize?") +
                                     query.toString(QUrl::FullyEncoded));
    setCookie(response, "auth_state", state, "Path=/auth; HttpOnly; SameSite=Lax; Max-Age=3600");
    return response;
}

HttpResponse SiteSignIn::callback(const HttpRequest& request) {
    const QString state = queryItem(request, "state");
    const auto wanted = m_returnTo.constFind(state);
    const bool isOurs =
        wanted != m_returnTo.constEnd() && request.cookies.value("auth_state") == state.toLatin1();
    const auto grant = isOurs ? m_provider.redeem(queryItem(request, "code")) : std::nullopt;
    if (!grant)
        return page(QStringLiteral("autherror.html"), {}, 400);
    HttpResponse response = signedIn(*wanted, grant->isSilent);
    m_returnTo.erase(wanted);
    setCookie(response, "auth_state", "", "Path=/auth; Max-Age=0");
    return response;
}

HttpResponse SiteSignIn::signedIn(const QString& returnTo, bool isSilent) {
    HttpResponse response = redirect(m_origins.site + returnTo);
    const QByteArray token =
        m_sessions.open(m_options.now(), m_options.signIn.siteSession, isSilent);
    setCookie(response, "session", token, "Path=/; HttpOnly; SameSite=Lax");
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
