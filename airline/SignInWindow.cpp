// SPDX-License-Identifier: MIT
#include "airline/SignInWindow.h"

#include "airline/Capture.h"
#include "airline/CookieVault.h"
#include "airline/NavHosts.h"
#include "airline/SAS.h"
#include "airline/SessionState.h"
#include "core/TDLog.h"
#include "platform/HostWindow.h"
#include "platform/WebView.h"

#include <QPointer>

using namespace Qt::StringLiterals;

QString SignInWindow::title() {
    return u"SAS — logg inn på EuroBonus"_s;
}

QString SignInWindow::instruction() {
    return u"Logg inn på EuroBonus under. Når du er innlogget, trykk Ferdig — etterpå kjører alle "
           u"søk skjult."_s;
}

QString SignInWindow::button() {
    return u"✓ Ferdig — jeg er innlogget"_s;
}

SignInWindow::SignInWindow(HostWindow& window, SignInContext context)
    : m_window(window), m_context(std::move(context)) {
    connect(&window, &HostWindow::finished, this, &SignInWindow::finishLogin);
    connect(&window, &HostWindow::closed, this, &SignInWindow::loginWindowClosed);
}

void SignInWindow::openLogin() {
    TDLog::note(u"innlogging: vindu aapnet"_s);
    m_context.state.setLoginWindowOpen(true);
    m_window.setReason({});
    m_window.show(HostWindow::Activation::takeFocus);
    loadLoginPage();
}

QCoro::Task<> SignInWindow::loadLoginPage() {
    const QPointer self(this);
    const int opening = ++m_openings;
    // Its page goes away, so its answer would never come.
    m_context.capture.end();
    co_await m_context.vault.restoreCookiesIfNeeded();
    if (!self)
        co_return;
    co_await m_context.vault.pruneCookiesNow();
    // The keychain may have taken a minute; the user may have closed the window, or opened it anew.
    if (self && m_context.state.isLoginWindowOpen() && opening == m_openings)
        m_context.view.load(QUrl(SAS::loginURL(m_context.site)));
}

void SignInWindow::finishLogin() {
    hide();
    judge();
}

void SignInWindow::loginWindowClosed() {
    if (m_context.state.isLoginWindowOpen())
        judge();
}

void SignInWindow::judge() {
    m_context.state.setLoginWindowOpen(false);
    const bool visited = m_context.navHosts.visited(m_context.site.identityHost);
    const QUrl page = m_context.view.url();
    const bool isFresh = visited && page.host().toLower().contains(m_context.site.domain) &&
                         !page.path().startsWith(u"/auth/"_s);
    if (isFresh) {
        m_context.state.lastSessionRefresh = m_context.clock.ticks();
        m_context.state.setLoginStatus(SASLoginStatus::checking());
        TDLog::note(u"innlogging: vindu lukket — auth0-runde fullfoert, oekten regnes fersk"_s);
        m_context.vault.snapshotSoon();
    } else {
        TDLog::note(u"innlogging: vindu lukket UTEN fullfoert auth0-runde (auth besoekt: %1) — "
                    u"antar ingenting, bekrefter"_s.arg(visited ? u"true"_s : u"false"_s));
    }
    Q_EMIT loginFinished();
}

void SignInWindow::showForHelp(const QString& reason) {
    m_window.setReason(reason);
    m_window.show(HostWindow::Activation::leaveFocus);
}

void SignInWindow::hide() {
    m_window.hide();
}

bool SignInWindow::isVisible() const {
    return m_window.isVisible();
}
