// SPDX-License-Identifier: MIT
#include "airline/Capture.h"

#include "airline/PageScripts.h"
#include "airline/SAS.h"
#include "platform/WebView.h"

#include <QRandomGenerator>

#include <array>

using namespace Qt::StringLiterals;

namespace {

QByteArray randomWord() {
    std::array<quint32, 4> numbers{};
    QRandomGenerator::system()->fillRange(numbers.data(), numbers.size());
    return QByteArray(reinterpret_cast<const char*>(numbers.data()), sizeof numbers).toHex();
}

} // namespace

Capture::Capture(WebView& view, Clock& clock, Site site)
    : m_view(view), m_clock(clock), m_site(std::move(site)), m_word(randomWord()) {
    view.addUserScript(
        PageScripts::call(u"capture-hook.js"_s, {PageScripts::jsString(QString::fromLatin1(m_word)),
                                                 QString::number(largestBody)}),
        {m_site.domain});
    view.setContentRules(
        PageScripts::resource(u"content-rules.json"_s)
            .replace("%SITE_HOST%", QUrl(m_site.origin).host().replace(u'.', u"\\\\."_s).toUtf8()));
    view.addMessageHandler(u"sniff"_s, {u"url"_s, u"body"_s, u"word"_s});
    connect(&view, &WebView::scriptMessage, this, &Capture::receive);
    // Nothing can come any more, and the time-out would be a minute away.
    connect(&view, &WebView::webProcessTerminated, this, &Capture::end);
    connect(&view, &WebView::loadFailed, this, &Capture::end);
}

Capture::~Capture() {
    end();
}

QCoro::Task<Capture::Body> Capture::capture(QString origin, QString dest, QString outDate,
                                            bool award, std::chrono::milliseconds timeout) {
    end();
    m_leg = Leg{origin, dest, outDate, award};
    const OneShot<Body> pending;
    m_pending = pending;
    m_view.load(pageOf(*m_leg));
    m_timeout = m_clock.after(timeout, [this] { end(); });
    co_return co_await pending;
}

void Capture::end() {
    m_timeout.reset();
    m_leg.reset();
    m_pending.resolve(std::nullopt);
}

void Capture::receive(const ScriptMessage& message) {
    if (message.handler != u"sniff" || !message.isObject || !m_leg ||
        message.texts.value(u"word"_s) != m_word)
        return;
    const auto body = message.texts.constFind(u"body"_s);
    if (body == message.texts.constEnd())
        return;
    const QString url = QString::fromUtf8(message.texts.value(u"url"_s));
    const auto matches = m_leg->award ? SAS::awardURLMatches : SAS::offersURLMatches;
    if (!matches(url, m_leg->origin, m_leg->dest, m_leg->outDate))
        return;
    m_timeout.reset();
    m_leg.reset();
    m_pending.resolve(body->size() > largestBody ? QByteArray() : *body);
}

QUrl Capture::pageOf(const Leg& leg) const {
    return QUrl(leg.award
                    ? SAS::awardURL(m_site, leg.origin, leg.dest, SAS::dashedDate(leg.outDate))
                    : SAS::bookingURL(m_site, leg.origin, leg.dest, leg.outDate));
}
