// SPDX-License-Identifier: MIT
#include "standin/IdentityProvider.h"

#include "standin/Fields.h"

namespace standin {
namespace {

using Challenge = SignInOptions::Challenge;
using Trouble = SignInOptions::Trouble;

constexpr qsizetype flowLimit = 1000;
const QString userPath = QStringLiteral("/u/login/identifier");
const QString passwordPath = QStringLiteral("/u/login/password");

QString pathWithState(const QString& path, const QString& key) {
    return path + QStringLiteral("?state=") + key + QStringLiteral("&ui_locales=nb");
}

HttpResponse lostFlow() {
    return page(QStringLiteral("autherror.html"), {}, 400);
}

} // namespace

IdentityProvider::IdentityProvider(const Options& options, const Origins& origins,
                                   Counters& counters)
    : m_options(options), m_origins(origins), m_counters(counters) {}

HttpResponse IdentityProvider::answer(const HttpRequest& request) {
    const QString& path = request.path;
    if (path == u"/authorize")
        return authorize(request);
    if (path == u"/idp.css" || path == u"/idp.js")
        return asset(path.sliced(1)).value();

    const QString key = queryItem(request, "state");
    const auto flow = m_flows.find(key);
    if (path != userPath && path != passwordPath && path != u"/authorize/resume" &&
        path != u"/challenge")
        return notFound();
    if (flow == m_flows.end())
        return lostFlow();
    if (path == u"/challenge")
        return json("\"" + flow->challenge.toLatin1() + "\"");
    if (path == u"/authorize/resume")
        return resume(key, *flow);
    const bool isSubmitted = request.method == "POST";
    if (path == userPath)
        return isSubmitted ? submitUser(request, key, *flow)
                           : form(QStringLiteral("identifier.html"), key, *flow, {});
    if (flow->user.isEmpty()) // the password page by itself
        return redirect(pathWithState(userPath, key));
    return isSubmitted ? submitPassword(request, key, *flow)
                       : form(QStringLiteral("password.html"), key, *flow, {});
}

HttpResponse IdentityProvider::authorize(const HttpRequest& request) {
    if (queryItem(request, "redirect_uri") != m_origins.site + QStringLiteral("/auth/callback") ||
        queryItem(request, "state").isEmpty())
        return lostFlow();
    if (m_options.signIn.trouble == Trouble::EndlessRedirects)
        return redirect(m_origins.idp + request.target.section(QStringLiteral("&round="), 0, 0) +
                        QStringLiteral("&round=") +
                        QString::number(queryItem(request, "round").toInt() + 1));

    const bool asksEverybody = queryItem(request, "prompt") == u"login";
    QByteArray token = request.cookies.value("sso");
    const qint64 now = m_options.now();
    if (m_options.signIn.isEverybodyKnown && !asksEverybody && !m_sessions.find(token, now))
        token = m_sessions.open(now, m_options.signIn.ssoSession, false);
    if (!asksEverybody && m_sessions.find(token, now)) {
        m_sessions.renew(token, now, m_options.signIn.ssoSession);
        HttpResponse response = backToSite(queryItem(request, "state"), true);
        setSsoCookie(response, token);
        return response;
    }
    if (m_flows.size() >= flowLimit)
        m_flows.clear();
    const QString key = QString::fromLatin1(randomToken());
    m_flows.insert(key, {.siteState = queryItem(request, "state"), .user = {}, .challenge = {}});
    HttpResponse response = redirect(pathWithState(userPath, key));
    setCookie(response, "flow", randomToken(), "Path=/; HttpOnly; SameSite=Lax");
    if (!request.cookies.contains("did"))
        setCookie(response, "did", randomToken(), "Path=/; Max-Age=31536000; HttpOnly");
    if (!request.cookies.contains("_ga"))
        setCookie(response, "_ga", "GA1.1." + randomToken().first(9), "Path=/; Max-Age=31536000");
    return response;
}

HttpResponse IdentityProvider::form(const QString& name, const QString& key, Flow& flow,
                                    const QString& error) {
    const SignInOptions& signIn = m_options.signIn;
    if (signIn.trouble == Trouble::BlankPage)
        return page(QStringLiteral("blank.html"));
    ++m_counters.forms;
    flow.challenge = QString::fromLatin1(randomToken());
    const char* challenge = signIn.challenge == Challenge::None     ? "none"
                            : signIn.challenge == Challenge::Solved ? "solved"
                                                                    : "never";
    return page(name,
                {{QStringLiteral("ads"), m_origins.ads},
                 {QStringLiteral("state"), key},
                 {QStringLiteral("user"), flow.user},
                 {QStringLiteral("error"), error},
                 {QStringLiteral("challenge"), QLatin1String(challenge)},
                 {QStringLiteral("delay"), QString::number(signIn.challengeDelay.count())}},
                error.isEmpty() ? 200 : 400);
}

// Without a challenge in the form there is no token to miss.
bool IdentityProvider::hasToken(const HttpRequest& request, const Flow& flow) const {
    const SignInOptions& signIn = m_options.signIn;
    return !signIn.isChallengeRequired || signIn.challenge == Challenge::None ||
           (!flow.challenge.isEmpty() && formField(request, "captcha") == flow.challenge);
}

HttpResponse IdentityProvider::submitUser(const HttpRequest& request, const QString& key,
                                          Flow& flow) {
    m_lastUser = formField(request, "username");
    const bool goesOn = hasToken(request, flow) && !m_lastUser.isEmpty() &&
                        m_options.signIn.trouble != Trouble::FormLoops;
    if (goesOn)
        flow.user = m_lastUser;
    return redirect(pathWithState(goesOn ? passwordPath : userPath, key));
}

HttpResponse IdentityProvider::submitPassword(const HttpRequest& request, const QString& key,
                                              Flow& flow) {
    m_lastPassword = formField(request, "password");
    if (!hasToken(request, flow))
        return redirect(pathWithState(passwordPath, key));
    if (!isRight(flow.user)) {
        return form(QStringLiteral("password.html"), key, flow,
                    QStringLiteral("Feil brukernavn eller passord."));
    }
    flow.isSignedIn = true;
    HttpResponse response = redirect(pathWithState(QStringLiteral("/authorize/resume"), key));
    setSsoCookie(response, m_sessions.open(m_options.now(), m_options.signIn.ssoSession, false));
    return response;
}

// Whether the password submitted last is this user's; counted.
bool IdentityProvider::isRight(const QString& user) {
    const bool isRight =
        user == m_options.signIn.user && m_lastPassword == m_options.signIn.password;
    ++(isRight ? m_counters.passwordSignIns : m_counters.rejectedPasswords);
    return isRight;
}

bool IdentityProvider::accepts(const QString& user, const QString& password) {
    m_lastUser = user;
    m_lastPassword = password;
    const SignInOptions& signIn = m_options.signIn;
    const bool needsToken = signIn.isChallengeRequired && signIn.challenge != Challenge::None;
    return !needsToken && isRight(user);
}

HttpResponse IdentityProvider::resume(const QString& key, const Flow& flow) {
    if (!flow.isSignedIn)
        return redirect(pathWithState(userPath, key));
    const QString siteState = flow.siteState;
    m_flows.remove(key);
    return backToSite(siteState, false);
}

HttpResponse IdentityProvider::backToSite(const QString& siteState, bool isSilent) {
    if (m_codes.size() >= flowLimit)
        m_codes.clear();
    const QString code = QString::fromLatin1(randomToken());
    m_codes.insert(code, {isSilent});
    if (isSilent)
        ++m_counters.silentSignIns;
    const QString state = QString::fromLatin1(QUrl::toPercentEncoding(siteState));
    return redirect(
        QStringLiteral("%1/auth/callback?code=%2&state=%3").arg(m_origins.site, code, state));
}

// With an expiry in the browser even when the session has none here, as a member stays known after
// the browser is closed.
void IdentityProvider::setSsoCookie(HttpResponse& response, const QByteArray& token) const {
    const qint64 life = m_options.signIn.ssoSession.count();
    setCookie(response, "sso", token,
              "Path=/; HttpOnly; SameSite=Lax; Max-Age=" +
                  QByteArray::number(life > 0 ? life : 3 * 86'400));
}

std::optional<IdentityProvider::Grant> IdentityProvider::redeem(const QString& code) {
    const auto it = m_codes.constFind(code);
    if (it == m_codes.constEnd())
        return std::nullopt;
    const Grant grant = *it;
    m_codes.erase(it);
    return grant;
}

void IdentityProvider::expireSso() {
    m_sessions.clear();
}

} // namespace standin
