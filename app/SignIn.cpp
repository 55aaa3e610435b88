// SPDX-License-Identifier: MIT
#include "app/SignIn.h"

#include "airline/LegFetcher.h"
#include "airline/SessionState.h"
#include "airline/SignInWindow.h"
#include "core/Database.h"
#include "platform/OneShot.h"
#include "polling/Worker.h"

#include <QPointer>

#include <algorithm>

SignIn::SignIn(SignInWindow& window, SessionState& session, Database& database, LegFetcher& fetcher,
               Worker& worker)
    : m_window(window)
    , m_session(session)
    , m_database(database)
    , m_fetcher(fetcher)
    , m_worker(worker) {
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
    const QPointer self(this);
    m_worker.forgetRevivalAttempt();
    const auto searches = m_database.listSearches();
    if (std::any_of(searches.begin(), searches.end(),
                    [](const Search& search) { return search.enabled; }))
        co_await m_worker.pollOnce();
    else
        co_await m_fetcher.verifyLogin();
    if (self)
        Q_EMIT confirmed(m_session.loginStatus().state == SASLoginStatus::Case::loggedIn);
}
