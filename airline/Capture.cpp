// SPDX-License-Identifier: MIT
#include "airline/Capture.h"

#include "airline/PageScripts.h"
#include "airline/SAS.h"
#include "airline/Verdict.h"

#include <QPointer>
#include <QRandomGenerator>

#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Kind = Outcome::Kind;

/// A page that got an error asks again within this time, if at all, and one whose request broke
/// takes longer to notice.
constexpr auto timeForAnotherTry = 3s;
constexpr auto timeAfterBrokenRequest = 10s;
/// A challenge that lets browsers through does so within this time.
constexpr auto timeForAnotherPage = 10s;
/// How often a page that has asked for nothing yet is looked at.
constexpr auto betweenLooks = 8s;

QByteArray randomWord() {
    std::array<quint32, 4> numbers{};
    QRandomGenerator::system()->fillRange(numbers.data(), numbers.size());
    return QByteArray(reinterpret_cast<const char*>(numbers.data()), sizeof numbers).toHex();
}

bool isIn(const QString& host, const QString& parent) {
    return !parent.isEmpty() && (host == parent || host.endsWith(u'.' + parent));
}

} // namespace

Capture::Capture(WebView& view, Clock& clock, Site site)
    : m_view(view)
    , m_clock(clock)
    , m_site(std::move(site))
    , m_parser(m_site)
    , m_word(randomWord()) {
    view.addUserScript(
        PageScripts::call(u"capture-hook.js"_s, {PageScripts::jsString(QString::fromLatin1(m_word)),
                                                 QString::number(largestBody)}),
        {m_site.domain});
    view.setContentRules(
        PageScripts::resource(u"content-rules.json"_s)
            .replace("%SITE_HOST%", QUrl(m_site.origin).host().replace(u'.', u"\\\\."_s).toUtf8()));
    view.addMessageHandler(u"sniff"_s,
                           {u"url"_s, u"status"_s, u"retryAfter"_s, u"body"_s, u"word"_s});
    connect(&view, &WebView::scriptMessage, this, &Capture::receive);
    connect(&view, &WebView::pageArrived, this, &Capture::takePage);
    // Nothing can come any more, and the time-out would be a minute away.
    connect(&view, &WebView::webProcessTerminated, this, [this] { conclude(Kind::failed); });
    connect(&view, &WebView::loadFailed, this, [this](WebView::LoadFailure failure) {
        conclude(failure == WebView::LoadFailure::unreachable ? Kind::unreachable : Kind::failed);
    });
}

Capture::~Capture() {
    end();
}

QCoro::Task<std::optional<Outcome>> Capture::capture(Leg leg, std::chrono::milliseconds timeout) {
    end();
    m_leg = leg;
    ++m_number;
    const OneShot<std::optional<Outcome>> pending;
    m_pending = pending;
    m_view.load(QUrl(SAS::pageOf(m_site, leg)));
    m_timeout = m_clock.after(timeout, [this] { giveUp(); });
    auto outcome = co_await pending;
    co_return outcome;
}

void Capture::end() {
    conclude(std::nullopt);
}

void Capture::conclude(Kind kind) {
    if (m_leg)
        conclude(Outcome{kind});
}

void Capture::conclude(std::optional<Outcome> outcome) {
    m_timeout.reset();
    m_holding.reset();
    m_nextLook.reset();
    m_held.reset();
    m_leg.reset();
    m_hasPage = false;
    m_pending.resolve(std::move(outcome));
}

void Capture::hold(Outcome outcome, std::chrono::milliseconds time) {
    m_held = std::move(outcome);
    m_holding = m_clock.after(time, [this] { giveUp(); });
}

/// A connection that hangs, as where packets are dropped, shows itself by a page that never comes.
void Capture::giveUp() {
    conclude(m_held ? std::exchange(m_held, std::nullopt).value()
                    : Outcome{m_hasPage ? Kind::silent : Kind::unreachable});
}

void Capture::receive(const ScriptMessage& message) {
    // Before its page has come, whatever fits is the page before's: strips of prices ask for other
    // days with less than the whole.
    if (message.handler != u"sniff" || !message.isObject || !m_leg || !m_hasPage ||
        message.texts.value(u"word"_s) != m_word)
        return;
    const auto body = message.texts.constFind(u"body"_s);
    if (body == message.texts.constEnd())
        return;
    const QString url = QString::fromUtf8(message.texts.value(u"url"_s));
    if (!SAS::isRequestOf(*m_leg, url))
        return;
    const Verdict::Response response{
        message.texts.value(u"status"_s).toInt(),
        QString::fromUtf8(message.texts.value(u"retryAfter"_s)).left(100), *body};
    Outcome outcome = Verdict::ofResponse(response, *m_leg, m_parser);
    if (outcome.kind == Kind::answer)
        conclude(std::move(outcome));
    else if (outcome.kind != Kind::silent || !m_held)
        hold(std::move(outcome), response.status == 0 ? timeAfterBrokenRequest : timeForAnotherTry);
}

void Capture::takePage(const QUrl& url, int status, const QString& retryAfter) {
    // What was there before may still arrive.
    if (!m_leg || url.scheme() == u"about")
        return;
    m_hasPage = true;
    m_held.reset();
    m_holding.reset();
    m_nextLook.reset();
    auto outcome = Verdict::ofPage(status, retryAfter.left(100));
    const bool isRefused = outcome && outcome->kind == Kind::refused;
    if (isIn(url.host().toLower(), m_site.identityHost) && !isRefused)
        conclude(Kind::signedOut);
    else if (outcome)
        hold(std::move(*outcome), timeForAnotherPage);
    else
        lookLater();
}

void Capture::lookLater() {
    m_nextLook = m_clock.after(betweenLooks, [this] { lookAtPage(); });
}

QCoro::Task<> Capture::lookAtPage() {
    const QPointer self(this);
    const int number = m_number;
    const auto state = co_await m_view.evaluate(PageScripts::call(u"page-state.js"_s, {}));
    if (!self || number != m_number || !m_leg)
        co_return;
    if (state == u"form"_s)
        conclude(Kind::signedOut);
    else if (state && Verdict::saysRefused(*state))
        conclude(Kind::refused);
    else
        lookLater();
}
