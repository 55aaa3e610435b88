// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Capture.h"
#include "airline/LegFetcher.h"
#include "airline/SessionState.h"

class Database;
class Keychain;
class SessionKeeper;

/// The one object that talks to the airline's site: it looks up fares in the hidden web view and
/// keeps watch over the session while it does. Main thread only.
class SASEngine : public QObject, public LegFetcher {
    Q_OBJECT
public:
    /// Everything must outlive the engine. Without a `keeper` the session is never renewed.
    SASEngine(WebView& view, Clock& clock, Database& database, Keychain& keychain,
              SessionState& state, Capture& capture, SessionKeeper* keeper);

    /// Asked by `verifyLogin`, which stands back while a poll round runs.
    void setRoundQuestion(std::function<bool()> roundIsRunning);

    SASLoginStatus loginStatus() const override { return m_state.loginStatus(); }
    bool isSiteUnreachable() const override { return m_state.isSiteUnreachable(); }
    QCoro::Task<> verifyLogin() override;
    QCoro::Task<FetchedLegs> fetchLegs(QList<LegGroup> legs, bool award, AbortQuestion shouldAbort,
                                       Progress progress) override;

    /// One real lookup of tomorrow's flights from Oslo to Copenhagen; true when it gave an answer.
    QCoro::Task<bool> probeLogin();
    /// Renews the session unless it was renewed less than six hours ago.
    QCoro::Task<> refreshSessionIfStale();

private:
    QCoro::Task<> verify();
    QCoro::Task<bool> confirm(bool isRenewed);
    QCoro::Task<Capture::Body> lookUp(QString origin, QString dest, QString outDate, bool award,
                                      std::chrono::milliseconds timeout);
    bool hasLostContact();
    QCoro::Task<> reportLoggedOut();
    QCoro::Task<bool> renew();
    QCoro::Task<FetchedLegs> fetch(QList<LegGroup> legs, bool award, AbortQuestion shouldAbort,
                                   Progress progress);
    void confirmNow();
    void leavePage();

    WebView& m_view;
    Clock& m_clock;
    Database& m_database;
    Keychain& m_keychain;
    SessionState& m_state;
    Capture& m_capture;
    SessionKeeper* m_keeper;
    std::function<bool()> m_roundIsRunning;
    bool m_probing = false;
    /// A load has failed since the last lookup or renewal began.
    bool m_loadFailed = false;
};
