// SPDX-License-Identifier: MIT
// How a session is renewed and a lost one brought back, with a web view that answers from a list.
#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/PageScripts.h"
#include "airline/SAS.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "airline/StoredCookies.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/MemorySecretStore.h"
#include "tests/support/FakeHostWindow.h"
#include "tests/support/FakeWebView.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto step = 1500ms;

const Credentials details{u"medlem-42@example.no"_s, u"Hemmelig-17"_s};
const QUrl form(u"http://idp.localhost:8080/u/login"_s);
const QUrl startPage(u"http://site.localhost:8080/"_s);

bool isFormScript(const QString& script) {
    return script.startsWith(
        QString::fromUtf8(PageScripts::resource(u"auto-login-form.js"_s)).trimmed());
}

/// What the script's function is called with, in the notation of the script language.
QString argumentText(const QString& script) {
    const QString name = isFormScript(script) ? u"auto-login-form.js"_s : u"sso-state.js"_s;
    const qsizetype length = QString::fromUtf8(PageScripts::resource(name)).trimmed().size();
    return script.mid(length + 1).chopped(2);
}
QJsonArray arguments(const QString& script) {
    return QJsonDocument::fromJson(u"[%1]"_s.arg(argumentText(script)).toUtf8()).array();
}

WebCookie storedCookie(const QString& name, const QString& domain,
                       std::optional<Instant> expires = std::nullopt) {
    return {name, u"value"_s, domain, u"/"_s, expires, false};
}

/// Cookies in memory; notes what happens to them and how many pages had been asked for by then.
class NotingStore final : public CookieStore {
public:
    explicit NotingStore(const FakeWebView& view) : m_view(view) {}
    QCoro::Task<std::optional<QList<WebCookie>>> all() override {
        co_await note(u"all"_s);
        // A copy: the task would move out of the member.
        co_return QList<WebCookie>(cookies);
    }
    QCoro::Task<bool> set(WebCookie cookie) override {
        co_await note(u"set "_s + cookie.name);
        cookies.append(cookie);
        co_return true;
    }
    QCoro::Task<> remove(WebCookie cookie) override {
        co_await note(u"remove "_s + cookie.name);
        cookies.removeAll(cookie);
    }

    QList<WebCookie> cookies;
    QStringList calls;
    /// What happens elsewhere while the store works.
    std::function<void()> meanwhile;

private:
    QCoro::Task<> note(QString call) {
        co_await nextTurn();
        calls.append(u"%1: %2"_s.arg(m_view.loaded.size()).arg(call));
        if (meanwhile)
            meanwhile();
    }
    const FakeWebView& m_view;
};

} // namespace

class TestSession : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        FakeWebView view;
        FakeHostWindow hostWindow;
        MemorySecretStore secrets;
        Keychain keychain{secrets};
        Database database{dir.path(), clock};
        SessionState state;
        Site site{u"http://site.localhost:8080"_s, u"site.localhost"_s, u"idp.localhost"_s,
                  u"idp.localhost"_s};
        Capture capture{view, clock, site};
        StandBack standBack{database.safekeeping(), clock};
        LiveSession session{view,  hostWindow, clock,   database, keychain,
                            state, standBack,  capture, site};
        NavHosts navHosts{view};
        std::optional<bool> result;
        int finished = 0;
        std::optional<std::optional<Outcome>> captured;

        World() {
            TDLog::start(dir.path() + u"/ui.log"_s, &clock);
            database.settings().set(Setting::autoLogin, true);
            keep(details);
            connect(&session.window(), &SignInWindow::loginFinished, &state,
                    [this] { ++finished; });
        }
        ~World() {
            settle();
            TDLog::start({}, nullptr);
        }

        /// For tests that make something of the session's themselves.
        SignInContext with(CookieVault& vault) {
            return {view, clock, state, capture, vault, navHosts, site};
        }
        void keep(const Credentials& itsDetails) {
            secrets.items.insert(u"app.tindra.Tindra.eurobonus"_s,
                                 {itsDetails.user, itsDetails.password.toUtf8()});
        }
        bool hasVault() const { return secrets.items.contains(u"app.tindra.Tindra.sascookies"_s); }
        /// The lines since the last call, without their times.
        QStringList log() {
            QFile file(dir.path() + u"/ui.log"_s);
            if (!file.open(QIODevice::ReadOnly))
                return {};
            QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
            lines.removeLast();
            for (QString& line : lines)
                line.remove(0, u"2027-01-15T12:00:00Z "_s.size());
            file.close();
            file.remove();
            return lines;
        }

        void startCapture() {
            capture.capture({u"OSL"_s, u"CPH"_s, QDate(2027, 3, 1)}, 45s)
                .then([this, world = QPointer(&state)](std::optional<Outcome> outcome) {
                    if (world) // it may end after its test
                        captured = outcome;
                });
            settle();
            QVERIFY(!captured);
        }
        bool captureHasEnded() const { return captured && !*captured; }

        void refresh(int maxSteps = 12) {
            result.reset();
            session.silentSSORefresh(maxSteps).then([this](bool answer) { result = answer; });
            settle();
        }
        void attempt() {
            result.reset();
            session.attemptAutoLogin().then([this](bool answer) { result = answer; });
            settle();
        }
        /// An attempt that has got to the form.
        void attemptAtTheForm() {
            attempt();
            view.current = form;
            log();
        }
        /// Steps in which the page answers this.
        void answer(const std::optional<QString>& text, int steps = 1) {
            view.page = [text](const QString&) { return text; };
            clock.advance(steps * step);
        }
        void navigate(const QUrl& url) { Q_EMIT view.navigating(url); }
        bool force() const { return arguments(view.evaluated.last())[2].toBool(); }
    };

    static QString timedOut() { return u"SSO-fornyelse: timeout uten avklaring"_s; }
    static QString secondLook() {
        return u"SSO-fornyelse: skjema vises — dobbeltsjekker med ny runde"_s;
    }
    static QString renewed() { return u"SSO-fornyelse: OK (stille, via auth0 — fristen rullet)"_s; }

private Q_SLOTS:
    // Single sign-on

    void aSilentRenewal() {
        World world;
        world.startCapture();
        world.refresh();
        QVERIFY(world.captureHasEnded());
        QCOMPARE(world.view.loaded.last(), QUrl(SAS::loginURL(world.site)));
        world.navigate(form);
        world.answer(u"waiting"_s);
        world.answer(std::nullopt);
        world.answer(u"else"_s);
        QCOMPARE(arguments(world.view.evaluated.last()),
                 (QJsonArray{u"idp.localhost"_s, u"site.localhost"_s}));
        world.view.page = [](const QString&) { return u"done"_s; };
        world.clock.advance(step - moment);
        QVERIFY(!world.result);
        world.clock.advance(moment);
        QCOMPARE(world.result, true);
        QCOMPARE(world.view.evaluated.size(), 4);
        QCOMPARE(world.log(), QStringList{renewed()});
        QCOMPARE(world.clock.waiting(), 0);
    }

    void nothingIsAskedBeforeANavigation() {
        World world;
        world.navigate(form);
        world.refresh(3);
        world.clock.advance(2 * step);
        // Not an address of any host, so not a beginning.
        world.navigate(QUrl(u"about:blank"_s));
        world.clock.advance(step - moment);
        QVERIFY(!world.result);
        world.clock.advance(moment);
        QCOMPARE(world.result, false);
        QVERIFY(world.view.evaluated.isEmpty());
        QCOMPARE(world.log(), QStringList{timedOut()});
    }

    void oneFormIsNotBelieved() {
        World world;
        world.refresh();
        world.navigate(form);
        world.answer(u"form"_s);
        QCOMPARE(world.log(), QStringList{secondLook()});
        world.clock.advance(3s - moment);
        QCOMPARE(world.view.loaded.size(), 1);
        world.clock.advance(moment);
        QCOMPARE(world.view.loaded.size(), 2);
        QVERIFY(!world.result);
        world.navigate(form);
        world.answer(u"done"_s);
        QCOMPARE(world.result, true);
        QCOMPARE(world.log(), QStringList{renewed()});

        // The second look has all its steps again.
        world.refresh(2);
        world.navigate(form);
        world.answer(u"waiting"_s);
        world.answer(u"form"_s);
        world.clock.advance(3s);
        world.navigate(form);
        world.answer(u"waiting"_s);
        QVERIFY(!world.result);
        world.answer(u"waiting"_s);
        QCOMPARE(world.result, false);
        QCOMPARE(world.log(), QStringList({secondLook(), timedOut()}));
    }

    void twoFormsAreTheEndOfSingleSignOn() {
        World world;
        // 2027-02-01 00:00:00.75 UTC; log lines count whole seconds.
        const Instant expiry = instantFromSeconds(1801440000.75);
        world.view.store.cookies = {storedCookie(u"did"_s, u".idp.localhost"_s, expiry),
                                    storedCookie(u"did_compat"_s, u"sub.idp.localhost"_s),
                                    storedCookie(u"auth0"_s, u"idp.localhost"_s),
                                    storedCookie(u"session"_s, u"site.localhost"_s)};
        world.refresh();
        world.navigate(form);
        world.answer(u"form"_s);
        world.clock.advance(3s);
        world.view.store.cookies = {storedCookie(u"session"_s, u"site.localhost"_s)};
        world.navigate(form);
        world.answer(u"form"_s);
        QCOMPARE(world.result, false);
        QCOMPARE(world.log(),
                 QStringList({secondLook(),
                              u"SSO-diagnose: cookies foer: auth0→(økt) "
                              u"did_compat→(økt) did→2027-02-01T00:00:00Z"_s,
                              u"SSO-diagnose: cookies naa: INGEN idp.localhost-cookies"_s,
                              u"SSO-fornyelse: skjema vises — SSO-oekten er doed"_s}));
        QCOMPARE(world.view.loaded.size(), 2);
        QCOMPARE(world.clock.waiting(), 0);
    }

    // The sign-in window

    void cookiesAreInOrderBeforeTheSignInPageLoads() {
        World world;
        world.secrets.items.insert(
            u"app.tindra.Tindra.sascookies"_s,
            {u"cookies"_s, StoredCookies::encode({storedCookie(u"session"_s, u"site.localhost"_s),
                                                  storedCookie(u"_ga"_s, u"site.localhost"_s)})});
        NotingStore store(world.view);
        CookieVault vault(store, world.keychain, world.database.safekeeping(), world.clock,
                          world.site);
        SignInWindow window(world.hostWindow, world.with(vault));
        window.openLogin();
        settle();
        // What the vault brought is cleaned as well.
        QCOMPARE(store.calls, QStringList({u"0: all"_s, u"0: all"_s, u"0: set session"_s,
                                           u"0: set _ga"_s, u"0: all"_s, u"0: remove _ga"_s}));
        QCOMPARE(world.view.loaded.size(), 1);

        store.calls.clear();
        store.cookies.append(storedCookie(u"ad"_s, u"tracker.example"_s));
        world.state.setLoginWindowOpen(false);
        SingleSignOn singleSignOn(world.with(vault));
        singleSignOn.silentSSOAttempt(0);
        settle();
        QCOMPARE(store.calls, QStringList({u"1: all"_s, u"1: remove ad"_s}));
        QCOMPARE(world.view.loaded.size(), 2);

        store.calls.clear();
        store.cookies.append(storedCookie(u"ad"_s, u"tracker.example"_s));
        AutoLogin autoLogin(world.with(vault), window, world.standBack, world.database.settings(),
                            world.keychain);
        autoLogin.attemptAutoLogin();
        settle();
        QCOMPARE(store.calls, QStringList({u"2: all"_s, u"2: remove ad"_s}));
        QCOMPARE(world.view.loaded.size(), 3);
        world.answer(u"done"_s);
    }

    void howASignInIsJudged() {
        const auto isFresh = [](const QUrl& visited, const QString& page) {
            World world;
            world.state.setLoginStatus(SASLoginStatus::loggedOut());
            world.session.window().openLogin();
            settle();
            world.view.store.cookies = {storedCookie(u"session"_s, u"site.localhost"_s)};
            world.navigate(visited);
            world.view.current = QUrl(page);
            world.clock.advance(1min);
            Q_EMIT world.hostWindow.finished();
            Q_EMIT world.hostWindow.closed();
            settle();
            const bool fresh = world.hasVault();
            [&] {
                QVERIFY(!world.hostWindow.visible);
                QVERIFY(!world.state.isLoginWindowOpen());
                QCOMPARE(world.state.loginStatus(),
                         fresh ? SASLoginStatus::checking() : SASLoginStatus::loggedOut());
                QCOMPARE(world.state.lastSessionRefresh,
                         fresh ? std::optional(world.clock.ticks()) : std::nullopt);
                QCOMPARE(world.finished, 1);
            }();
            return fresh;
        };
        const QString site = startPage.toString();
        QVERIFY(isFresh(form, site));
        QVERIFY(isFresh(QUrl(u"https://a.idp.localhost/"_s), u"https://WWW.Site.localhost/meg"_s));
        QVERIFY(isFresh(form, site + u"author/"_s));
        QVERIFY(!isFresh(startPage, site));
        for (const QString& page : {site + u"auth/callback?code=1"_s, form.toString(),
                                    u"https://example.no/"_s, u"about:blank"_s})
            QVERIFY2(!isFresh(form, page), qPrintable(page));
    }

    void everythingStandsBackForTheUser() {
        for (const bool automatic : {false, true}) {
            World world;
            automatic ? world.attempt() : world.refresh();
            world.view.current = form;
            world.navigate(form);
            world.answer(u"waiting"_s, 2);
            QVERIFY(!world.result);
            const auto loads = world.view.loaded.size();
            world.session.window().openLogin();
            settle();
            QCOMPARE(world.view.loaded.size(), loads + 1);
            world.view.page = nullptr;
            world.clock.advance(5min);
            QCOMPARE(world.result, false);
            QCOMPARE(world.view.loaded.size(), loads + 1);
            QVERIFY(world.hostWindow.visible);
            QVERIFY(world.state.isLoginWindowOpen());
        }
    }

    void aLateKeychainDoesNotLoadOverALookup() {
        World world;
        // Opened and closed again before the keychain has answered.
        world.session.window().openLogin();
        world.hostWindow.visible = false;
        Q_EMIT world.hostWindow.closed();
        world.startCapture();
        QCOMPARE(world.view.loaded.size(), 1);
        QVERIFY(world.view.loaded.first().path().startsWith(u"/book/"_s));
    }

    void openingAndClosingTheWindow() {
        World world;
        Q_EMIT world.hostWindow.closed();
        QCOMPARE(world.finished, 0);
        QVERIFY(world.log().isEmpty());
        world.startCapture();
        world.hostWindow.reason = u"an older one"_s;
        world.session.window().openLogin();
        settle();
        QVERIFY(world.captureHasEnded());
        QCOMPARE(world.hostWindow.activation, HostWindow::Activation::takeFocus);
        QVERIFY(world.hostWindow.reason.isEmpty());
        QCOMPARE(world.view.loaded.mid(1), QList<QUrl>{QUrl(SAS::loginURL(world.site))});
        world.navigate(form);
        world.view.current = startPage;
        Q_EMIT world.hostWindow.closed();
        Q_EMIT world.hostWindow.closed();
        QCOMPARE(world.finished, 1);
        QVERIFY(!world.state.isLoginWindowOpen());
        QCOMPARE(world.state.loginStatus(), SASLoginStatus::checking());
    }

    void signedOutIsSaidOnceAndWithItsReason() {
        World world;
        QList<SignOut> told;
        connect(&world.state, &SessionState::signedOut, &world.state,
                [&told](SignOut how) { told.append(how); });
        world.state.setLoggedOut(false);
        world.state.setLoggedOut(true);
        world.state.setLoginWindowOpen(true);
        world.state.setLoggedOut(true);
        QCOMPARE(told, QList{SignOut::plain});
        world.state.setLoginStatus(SASLoginStatus::checking());
        world.state.setLoggedOut(true);
        world.state.setLoginWindowOpen(false);
        world.state.setLoginStatus(SASLoginStatus::loggedIn(world.clock.now()));
        world.state.setLoggedOut(true);
        QCOMPARE(told, QList({SignOut::plain, SignOut::windowWaits, SignOut::autoLoginFailed}));
    }

    // Automatic sign-in

    void anAutomaticSignIn() {
        World world;
        world.startCapture();
        world.hostWindow.visible = true;
        world.attempt();
        QVERIFY(world.captureHasEnded());
        QVERIFY(!world.hostWindow.visible);
        QCOMPARE(world.view.loaded.mid(1), QList<QUrl>{QUrl(SAS::loginURL(world.site))});
        QCOMPARE(world.log(), QStringList{u"auto-innlogging: starter (skjema + ev. Turnstile)"_s});

        world.view.current = form;
        world.answer(u"filled-user"_s);
        world.answer(u"filled-pass"_s);
        QCOMPARE(arguments(world.view.evaluated.last()),
                 (QJsonArray{details.user, details.password, false, u"idp.localhost"_s,
                             u"site.localhost"_s}));
        QVERIFY(!world.hasVault());
        world.view.store.cookies = {storedCookie(u"session"_s, u"site.localhost"_s)};
        world.view.current = startPage;
        world.view.page = [](const QString&) { return u"done"_s; };
        world.clock.advance(step - moment);
        QVERIFY(!world.result);
        world.clock.advance(moment);
        QCOMPARE(world.result, true);
        QCOMPARE(world.log(), QStringList{u"auto-innlogging: fullfoert"_s});
        QCOMPARE(world.state.lastSessionRefresh, std::optional(world.clock.ticks()));
        QVERIFY(world.hasVault());
        QCOMPARE(world.hostWindow.shows, 0);
        QVERIFY(!world.state.isLoginWindowOpen());
        QCOMPARE(world.clock.waiting(), 0);
    }

    void reasonsNotToTry() {
        World world;
        const auto isRefused = [&world](const QStringList& lines) {
            world.attempt();
            [&] {
                QCOMPARE(world.result, false);
                QCOMPARE(world.log(), lines);
                QVERIFY(world.view.loaded.isEmpty());
            }();
        };
        world.database.settings().set(Setting::autoLogin, false);
        isRefused({u"auto-innlogging: hoppet over (slaatt av)"_s});
        world.database.settings().set(Setting::autoLogin, true);
        world.secrets.items.clear();
        isRefused({u"auto-innlogging: hoppet over (ingen detaljer i noekkelringen)"_s});
        world.keep(details);
        world.hostWindow.visible = true;
        world.state.setLoginWindowOpen(true);
        isRefused({});
        QVERIFY(world.hostWindow.visible);
        // None of these counts as a try.
        world.state.setLoginWindowOpen(false);
        world.attempt();
        QVERIFY(!world.result);
        world.answer(u"done"_s);
    }

    void onceInFiveMinutes() {
        World world;
        world.attemptAtTheForm();
        world.answer(u"error"_s);
        QCOMPARE(world.result, false);
        QCOMPARE(world.log(),
                 QStringList{u"auto-innlogging: synlig feilmelding i skjemaet — gir opp"_s});
        QVERIFY(!world.state.isLoginWindowOpen());
        world.clock.advance(300s - step - moment);
        world.attempt();
        QCOMPARE(world.result, false);
        QVERIFY(world.log().isEmpty());
        QCOMPARE(world.view.loaded.size(), 1);
        world.clock.advance(moment);
        world.attempt();
        QVERIFY(!world.result);
        QCOMPARE(world.view.loaded.size(), 2);
        // A success is no reason to try sooner.
        world.answer(u"done"_s);
        QCOMPARE(world.result, true);
        world.clock.advance(300s - step - moment);
        world.attempt();
        QCOMPARE(world.result, false);
    }

    void theUserComesFirst_data() {
        QTest::addColumn<bool>("whilePruning");
        QTest::addColumn<bool>("closedAgain");
        for (const bool whilePruning : {false, true}) {
            for (const bool closedAgain : {false, true})
                QTest::addRow("%d %d", whilePruning, closedAgain) << whilePruning << closedAgain;
        }
    }
    void theUserComesFirst() {
        QFETCH(bool, whilePruning);
        QFETCH(bool, closedAgain);
        World world;
        NotingStore store(world.view);
        CookieVault vault(store, world.keychain, world.database.safekeeping(), world.clock,
                          world.site);
        AutoLogin autoLogin(world.with(vault), world.session.window(), world.standBack,
                            world.database.settings(), world.keychain);
        const auto open = [&] {
            world.state.setLoginWindowOpen(true);
            world.state.setLoginWindowOpen(!closedAgain);
        };
        if (whilePruning)
            store.meanwhile = open;
        const auto attempt = [&] {
            world.result.reset();
            autoLogin.attemptAutoLogin().then([&](bool answer) { world.result = answer; });
        };
        attempt();
        if (!whilePruning)
            open();
        settle();
        QCOMPARE(world.result, false);
        QVERIFY(world.view.loaded.isEmpty());
        QCOMPARE(world.clock.waiting(), 0);

        // What never loaded a page was no attempt.
        store.meanwhile = nullptr;
        world.state.setLoginWindowOpen(false);
        attempt();
        settle();
        QCOMPARE(world.view.loaded.size(), 1);
        // Nor does it go on when the user was there between two steps.
        world.view.current = form;
        world.state.setLoginWindowOpen(true);
        world.state.setLoginWindowOpen(false);
        world.clock.advance(step);
        QCOMPARE(world.result, false);
        QVERIFY(world.view.evaluated.isEmpty());
    }

    void nothingIsFilledInWhileTheAirlineRefuses() {
        World world;
        const QString skipped = u"auto-innlogging: hoppet over (SAS ber oss vente)"_s;
        world.standBack.refuse({}, 429);
        world.attempt();
        // Not even the keychain is asked.
        QCOMPARE(world.result, false);
        QCOMPARE(world.log().last(), skipped);

        // It begins to refuse while the keychain is asked.
        world.standBack.lift();
        world.result.reset();
        world.session.attemptAutoLogin().then([&](bool answer) { world.result = answer; });
        world.standBack.refuse({}, 429);
        settle();
        QCOMPARE(world.result, false);
        QCOMPARE(world.log().last(), skipped);
        QVERIFY(world.view.loaded.isEmpty());

        // Or at the form. To look where the way has led is allowed.
        world.standBack.lift();
        world.attempt();
        QCOMPARE(world.view.loaded.size(), 1);
        world.standBack.refuse({}, 429);
        world.view.current = startPage;
        world.answer(u"waiting"_s, 2);
        QCOMPARE(world.view.evaluated.size(), 2);
        QVERIFY(!world.result);
        world.view.current = form;
        world.clock.advance(step);
        QCOMPARE(world.result, false);
        QCOMPARE(world.log().last(), skipped);
        QCOMPARE(world.view.evaluated.size(), 2);
        QVERIFY(!world.state.isLoginWindowOpen());
    }

    void theStepsOfAnAttemptRunOut() {
        World world;
        world.attemptAtTheForm();
        for (int i = 0; i < 139; ++i)
            world.answer(i % 2 == 0 ? std::optional(u"Done"_s) : std::nullopt);
        QVERIFY(!world.result);
        world.clock.advance(step);
        QCOMPARE(world.result, false);
        QCOMPARE(world.log(),
                 QStringList{u"auto-innlogging: ga opp etter ~210 s (Turnstile/ingen fremgang)"_s});
        QCOMPARE(world.view.evaluated.size(), 140);
        QCOMPARE(world.hostWindow.shows, 0);
        QVERIFY(!world.state.isLoginWindowOpen());
    }

    void theSameFormAgainAndAgain() {
        for (const auto& [again, other] : {std::pair(u"filled-user"_s, u"filled-pass"_s),
                                           {u"filled-pass"_s, u"filled-user"_s}}) {
            World world;
            world.attemptAtTheForm();
            world.answer(again);
            world.answer(other);
            QCOMPARE(world.hostWindow.shows, 0);
            world.answer(again);
            QCOMPARE(world.hostWindow.shows, 1);
            QCOMPARE(world.hostWindow.activation, HostWindow::Activation::leaveFocus);
            QVERIFY(!world.hostWindow.reason.isEmpty());
            QVERIFY(!world.state.isLoginWindowOpen());
            // Both are counted afresh now.
            world.answer(again, 2);
            world.answer(other, 2);
            QVERIFY(!world.result);
            QCOMPARE(world.hostWindow.shows, 1);
            QVERIFY(world.log().isEmpty());
            world.answer(again);
            QCOMPARE(world.result, false);
            QVERIFY(
                world.log().value(0).endsWith(u"samme skjema 3 ganger uten fremgang — gir opp"));
            QVERIFY(world.hostWindow.visible);
            QVERIFY(world.state.isLoginWindowOpen());
            // The user goes on in it, and that counts.
            world.navigate(form);
            world.view.current = startPage;
            Q_EMIT world.hostWindow.finished();
            QCOMPARE(world.finished, 1);
            QCOMPARE(world.state.loginStatus(), SASLoginStatus::checking());
        }
    }

    void aWindowThatHelpsIsHiddenAndOneThatTheUserClosedIsNotOpen() {
        for (const bool helps : {true, false}) {
            World world;
            world.attemptAtTheForm();
            world.answer(u"filled-user"_s, 2);
            QVERIFY(world.hostWindow.visible);
            if (!helps) {
                world.hostWindow.visible = false;
                Q_EMIT world.hostWindow.closed();
            }
            world.answer(helps ? u"done"_s : u"error"_s);
            QCOMPARE(world.result, helps);
            QVERIFY(!world.hostWindow.visible);
            QVERIFY(!world.state.isLoginWindowOpen());
            QCOMPARE(world.finished, 0);
        }
    }

    void aChallengeThatIsNotSolved() {
        World world;
        world.attemptAtTheForm();
        world.answer(u"filled-user"_s);
        world.answer(u"captcha-pending"_s, 7);
        world.answer(u"waiting"_s);
        QVERIFY(!world.force());
        world.answer(u"captcha-pending"_s);
        QVERIFY(!world.force());
        world.answer(u"captcha-pending"_s, 11);
        QVERIFY(world.force());
        QCOMPARE(world.hostWindow.shows, 0);
        world.answer(u"captcha-pending"_s);
        QCOMPARE(world.hostWindow.shows, 1);
        QCOMPARE(world.hostWindow.activation, HostWindow::Activation::leaveFocus);
        QVERIFY(!world.hostWindow.reason.isEmpty());
        world.answer(u"waiting"_s);
        QVERIFY(world.force());
        // The window has begun a new count of forms, and a form ends the forcing for good.
        world.answer(u"filled-user"_s, 2);
        world.answer(u"captcha-pending"_s, 25);
        QVERIFY(!world.force());
        QCOMPARE(world.hostWindow.shows, 1);
        QVERIFY(!world.result);
        world.answer(u"filled-user"_s);
        QCOMPARE(world.result, false);
        QVERIFY(world.state.isLoginWindowOpen());
    }

    void forcingEndsWithTheFormItGotThrough() {
        World world;
        world.attemptAtTheForm();
        world.answer(u"captcha-pending"_s, 8);
        world.answer(u"filled-user"_s);
        QVERIFY(world.force());
        world.answer(u"captcha-pending"_s);
        QVERIFY(!world.force());
        // The challenge's count goes on from page to page.
        world.answer(u"captcha-pending"_s);
        QVERIFY(world.force());
        world.answer(u"done"_s);
    }

    void detailsGoToTheProviderOnly() {
        World world;
        world.attempt();
        for (const QString& page :
             {u"http://site.localhost:8080/auth/login"_s, u"http://idp.localhost.example.no/"_s,
              u"http://evilidp.localhost/"_s, u"about:blank"_s}) {
            world.view.current = QUrl(page);
            for (const QString& text : {u"form"_s, u"error"_s, u"filled-user"_s}) {
                world.answer(text);
                QVERIFY2(!isFormScript(world.view.evaluated.last()), qPrintable(page));
            }
        }
        QVERIFY(!world.result);
        QCOMPARE(world.hostWindow.shows, 0);
        for (const QString& script : world.view.evaluated) {
            QVERIFY(!script.contains(details.user));
            QVERIFY(!script.contains(details.password));
        }
        world.view.current = form;
        world.answer(u"waiting"_s);
        QVERIFY(isFormScript(world.view.evaluated.last()));
        world.view.current = startPage;
        world.answer(u"done"_s);
        QCOMPARE(world.result, true);
        QVERIFY(!isFormScript(world.view.evaluated.last()));
        for (const QString& line : world.log())
            QVERIFY(!line.contains(details.user) && !line.contains(details.password));
    }

    void wherePasswordsMayGo() {
        const auto mayGo = [](const char* provider, const char* page) {
            Site site;
            site.identityHost = QString::fromLatin1(provider);
            return AutoLogin::mayFillIn(site, QUrl(QString::fromLatin1(page)));
        };
        for (const char* page :
             {"https://auth.flysas.com/u/login?state=1", "https://auth.flysas.com:8443/",
              "HTTPS://AUTH.FlySAS.com/", "https://eu.auth.flysas.com/"})
            QVERIFY2(mayGo("auth.flysas.com", page), page);
        for (const char* page :
             {"http://auth.flysas.com/", "ftp://auth.flysas.com/", "https://flysas.com/",
              "https://www.sas.no/", "https://evilauth.flysas.com/",
              "https://auth.flysas.com.evil.no/", "https://auth.flysas.com@evil.no/",
              "https://evil.no/auth.flysas.com", "https://evil.no/#.auth.flysas.com",
              "http://localhost/", "about:blank", "file:///auth.flysas.com", ""})
            QVERIFY2(!mayGo("auth.flysas.com", page), page);
        // Without encryption only on this machine.
        QVERIFY(mayGo("idp.localhost", "http://idp.localhost:1/"));
        QVERIFY(mayGo("idp.localhost", "http://A.idp.localhost/"));
        QVERIFY(!mayGo("idp.localhost", "http://localhost/"));
        QVERIFY(mayGo("127.0.0.1", "http://127.0.0.1:8080/"));
        QVERIFY(mayGo("::1", "http://[::1]:8080/"));
        QVERIFY(mayGo("192.168.1.5", "https://192.168.1.5/"));
        for (const char* host :
             {"evillocalhost", "localhost.evil.no", "127.0.0.1.evil.no", "192.168.1.5"})
            QVERIFY2(!mayGo(host, QByteArray("http://") + host + '/'), host);
    }
};

TINDRA_TEST(TestSession)
#include "test_session.moc"
