// SPDX-License-Identifier: MIT
#include "app/SignIn.h"

#include "airline/LegFetcher.h"
#include "airline/SessionState.h"
#include "airline/SignInWindow.h"
#include "airline/StandBack.h"
#include "core/WatcherStore.h"
#include "platform/OneShot.h"
#include "polling/Worker.h"

#include <QPointer>

using namespace std::chrono_literals;

namespace {

constexpr auto signInWaitStep = 200ms;

} // namespace

SignIn::SignIn(SignInWindow& window, SessionState& session, StandBack& standBack,
               WatcherStore& watchers, LegFetcher& fetcher, Worker& worker, Clock& clock)
    : m_window(window)
    , m_session(session)
    , m_standBack(standBack)
    , m_watchers(watchers)
    , m_fetcher(fetcher)
    , m_worker(worker)
    , m_clock(clock) {
    connect(&window, &SignInWindow::loginFinished, this, [this] { confirm(); });
}

QCoro::Task<bool> SignIn::run() {
    const OneShot<bool> works;
    const auto connection =
        connect(this, &SignIn::confirmed, this, [works](bool answer) { works.resolve(answer); });
    m_window.openLogin();
    const bool answer = co_await works;
    disconnect(connection);
    co_return answer;
}

QCoro::Task<> SignIn::confirm() {
    // What the user does in the window while this runs is waited for below.
    if (std::exchange(m_isConfirming, true))
        co_return;
    const QPointer self(this);
    do {
        // What the window has cut short may not have noticed yet, and what needs the user's help
        // has not decided anything.
        while (self &&
               (m_worker.isBusy() || m_fetcher.isVerifying() || m_session.isLoginWindowOpen()))
            co_await m_clock.sleep(signInWaitStep);
        if (!self)
            co_return;
        m_worker.forgetRevivalAttempt();
        // Whoever has just signed in wants to know whether it works.
        m_standBack.lift();
        bool isDecided = false;
        if (!enabledOf(m_watchers.listSearches()).isEmpty()) {
            const SASLoginStatus before = m_session.loginStatus();
            co_await m_worker.pollOnce();
            if (!self)
                co_return;
            // A round without any answer says nothing; each answer is a new confirmation.
            const SASLoginStatus& now = m_session.loginStatus();
            isDecided =
                now.isLoggedOut() || (now.state == SASLoginStatus::Case::loggedIn && now != before);
        }
        if (!isDecided)
            co_await m_fetcher.verifyLogin();
    } while (self && m_session.isLoginWindowOpen());
    if (!self)
        co_return;
    m_isConfirming = false;
    Q_EMIT confirmed(m_session.loginStatus().state == SASLoginStatus::Case::loggedIn);
}
