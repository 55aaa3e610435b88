// SPDX-License-Identifier: MIT
// How the session is kept alive, with the real web engine, window, keychain and bus against the
// stand-in airline's identity provider. Only the clock is manual.
#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SASEngine.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/GtkHostWindow.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "standin/StandIn.h"
#include "tests/support/ManualClock.h"
#include "tests/support/NotificationService.h"
#include "tests/support/Settled.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Trouble = standin::SignInOptions::Trouble;
using Challenge = standin::SignInOptions::Challenge;

class TestSessionChain : public QObject {
    Q_OBJECT

public:
    explicit TestSessionChain(WebKitRuntime& runtime) : m_runtime(runtime) {}

private:
    WebKitRuntime& m_runtime;

    struct World {
        QTemporaryDir dir;
        ManualClock clock{QDate::currentDate()};
        standin::StandIn airline{options()};
        NotificationService desktop{QStringList{u"body"_s}};
        Database database{dir.path(), clock};
        DBusNotifications notifications{QDBusConnection::sessionBus()};
        Notifier notifier{database, notifications, clock};
        SecretServiceStore secrets{clock};
        Keychain keychain{secrets};
        SessionState state;
        StandBack standBack{database.safekeeping(), clock};
        std::unique_ptr<WebKitView> view;
        std::unique_ptr<GtkHostWindow> window;
        std::unique_ptr<Capture> capture;
        std::unique_ptr<LiveSession> session;
        std::unique_ptr<SASEngine> engine;
        std::unique_ptr<Worker> worker;

        explicit World(WebKitRuntime& runtime, int days = 5) : view(runtime.makeView(clock)) {
            if (const auto error = airline.start())
                qFatal("%s", qPrintable(*error));
            TDLog::start(dir.path() + u"/ui.log"_s, &clock);
            const Site site{airline.siteOrigin(), airline.siteDomain(), airline.idpHost(),
                            airline.idpDomain()};
            connect(&state, &SessionState::signedOut, &notifier, &Notifier::notifySignedOut);
            window = std::make_unique<GtkHostWindow>(
                *view, GtkHostWindow::Texts{SignInWindow::title(), SignInWindow::instruction(),
                                            SignInWindow::button()});
            capture = std::make_unique<Capture>(*view, clock, site);
            session = std::make_unique<LiveSession>(*view, *window, clock, database, keychain,
                                                    state, standBack, *capture, site);
            engine = std::make_unique<SASEngine>(*view, clock, database.settings(), keychain, state,
                                                 standBack, *capture, *session,
                                                 [this] { return worker->isRunning(); });
            worker = std::make_unique<Worker>(database, *engine, notifier, clock);
            Search search;
            search.origin = u"OSL"_s;
            search.destination = u"LHR"_s;
            search.cabins = {Cabin::first};
            search.dateFrom = clock.today().addDays(20);
            search.dateTo = clock.today().addDays(20 + days - 1);
            database.watchers().addSearch(search);
            emptyStore();
            wait(keychain.clear());
        }
        ~World() { TDLog::start({}, nullptr); }

        static standin::Options options() {
            standin::Options options;
            options.pageDelay = 0ms;
            options.signIn.isRequired = true;
            options.signIn.challengeDelay = 100ms;
            return options;
        }
        /// Lets the pages load until nothing has been asked for a moment, then lets a step of the
        /// sign-in pass.
        void step() {
            qsizetype asked = -1;
            for (int quiet = 0; quiet < 3; ++quiet) {
                QTest::qWait(15);
                const qsizetype now = airline.requests(airline.siteDomain()).size() +
                                      airline.requests(airline.idpHost()).size();
                if (std::exchange(asked, now) != now)
                    quiet = 0;
            }
            clock.advance(1500ms);
        }
        /// The task's end, in steps.
        template<typename T>
        std::optional<T> run(QCoro::Task<T> task) {
            const auto result = std::make_shared<std::optional<T>>();
            task.then([result](T value) { *result = std::move(value); });
            for (int i = 0; !*result && i < 1000; ++i) {
                QTest::qWait(1);
                if (!*result)
                    step();
            }
            return *result;
        }
        void wait(QCoro::Task<> task) {
            const auto whole = [](QCoro::Task<> inner) -> QCoro::Task<bool> {
                co_await inner;
                co_return true;
            };
            QVERIFY(run(whole(std::move(task))));
        }
        PollSummary round() { return run(worker->pollOnce()).value_or(PollSummary()); }
        void emptyStore() {
            const auto cookies = run(view->cookies().all()).value().value();
            for (const WebCookie& cookie : cookies)
                wait(view->cookies().remove(cookie));
        }
        /// As a user who has signed in by hand before.
        void haveDetails(const QString& password = u"demo"_s) {
            database.settings().set(Setting::autoLogin, true);
            wait(keychain.save(u"demo@tindra.example"_s, password));
        }
        void signOutEverywhere() {
            airline.expireSiteSession();
            airline.expireSso();
        }
        QByteArray log() const {
            QFile file(dir.path() + u"/ui.log"_s);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }
        bool isLoggedIn() const {
            return state.loginStatus().state == SASLoginStatus::Case::loggedIn;
        }
    };

private Q_SLOTS:
    void fromNothingToSignedInByTheForm() {
        World world(m_runtime);
        world.haveDetails();
        const PollSummary summary = world.round();
        QCOMPARE(summary.errors, QStringList());
        QVERIFY(summary.fetched > 0);
        QVERIFY(world.isLoggedIn());
        QCOMPARE(world.airline.counters().passwordSignIns, 1);
        QVERIFY(world.log().contains("SSO-fornyelse: skjema vises — SSO-oekten er doed"));
        QVERIFY(world.log().contains("auto-innlogging: fullfoert"));
        QVERIFY(!world.window->isVisible());
        QVERIFY(world.desktop.received.isEmpty());

        // A session that ends while single sign-on lives is renewed in the middle of the round.
        world.airline.expireSiteSession();
        const int formsBefore = world.airline.counters().forms;
        const PollSummary renewed = world.round();
        QCOMPARE(renewed.errors, QStringList());
        QVERIFY(renewed.fetched > 0);
        QCOMPARE(world.airline.counters().forms, formsBefore);
        QVERIFY(world.airline.counters().silentSignIns > 0);
        QVERIFY(world.log().contains("SSO-fornyelse: OK (stille, via auth0"));
        const QString second = world.clock.today().addDays(21).toString(u"yyyyMMdd"_s);
        QVERIFY(world.airline.looks(u"OSL-LHR-"_s + second) >= 2);

        // With everything gone from the browser, the vault brings the session back.
        const QByteArray vault = world.run(world.keychain.loadCookieData())->value_or(QByteArray());
        QVERIFY(vault.contains("\"domain\""));
        QVERIFY(!vault.contains("_ga"));
        world.emptyStore();
        CookieVault next(world.view->cookies(), world.keychain, world.database.safekeeping(),
                         world.clock, Site{{}, u"site.localhost"_s, {}, u"id.localhost"_s});
        // In real time: a step of the clock is longer than the keychain is waited for.
        awaited(next.restoreCookiesIfNeeded());
        QVERIFY(world.log().contains("cookie-hvelv: la tilbake "));
        const int signIns = world.airline.counters().passwordSignIns;
        QCOMPARE(world.round().errors, QStringList());
        QCOMPARE(world.airline.counters().passwordSignIns, signIns);
    }

    void anyPasswordArrivesUnchanged() {
        World world(m_runtime);
        const QString password = u"a\"b'c\\d\te«fø» 🛫 Ωж</script>${x}`#{y}"_s;
        auto options = World::options().signIn;
        options.password = password;
        world.airline.setSignIn(options);
        world.haveDetails(password);
        QCOMPARE(world.round().errors, QStringList());
        QCOMPARE(world.airline.lastPassword(), password);
        QCOMPARE(world.airline.lastUser(), u"demo@tindra.example"_s);
        QVERIFY(!world.log().contains("fø"));
    }

    void aChallengeThatNeedsTheUserShowsTheWindow() {
        World world(m_runtime);
        world.haveDetails();
        auto options = World::options().signIn;
        options.challenge = Challenge::Never;
        options.isChallengeRequired = true;
        world.airline.setSignIn(options);
        std::optional<PollSummary> summary;
        world.worker->pollOnce().then([&summary](PollSummary result) { summary = result; });
        // The user sees the window after a while, and shows each form that they are human.
        int clicks = 0;
        for (int i = 0; !summary && i < 600; ++i) {
            world.step();
            if (!world.window->isVisible())
                continue;
            const auto clicked = awaited(world.view->evaluate(uR"((() => {
                    const button = document.querySelector('#challenge button');
                    if (!button || button.disabled) return 'none';
                    button.click();
                    return 'clicked';
                })())"_s));
            clicks += clicked && *clicked == u"clicked"_s ? 1 : 0;
        }
        QVERIFY(summary);
        QVERIFY(clicks > 0);
        QCOMPARE(summary->errors, QStringList());
        QVERIFY(world.isLoggedIn());
        QVERIFY(!world.window->isVisible());
        QVERIFY(!world.state.isLoginWindowOpen());
    }

    void whenEverythingFailsTheUserIsToldOnce_data() {
        QTest::addColumn<int>("trouble");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("wrong password")
            << int(Trouble::None) << u"wrong"_s
            << QByteArray("auto-innlogging: synlig feilmelding i skjemaet — gir opp");
        QTest::newRow("no form") << int(Trouble::BlankPage) << u"demo"_s
                                 << QByteArray("auto-innlogging: ga opp etter ~210 s "
                                               "(Turnstile/ingen fremgang)");
        QTest::newRow("redirects") << int(Trouble::EndlessRedirects) << u"demo"_s
                                   << QByteArray("SSO-fornyelse: timeout uten avklaring");
    }
    void whenEverythingFailsTheUserIsToldOnce() {
        QFETCH(int, trouble);
        QFETCH(QString, password);
        QFETCH(QByteArray, line);
        World world(m_runtime);
        world.haveDetails(password);
        auto options = World::options().signIn;
        options.trouble = static_cast<Trouble>(trouble);
        world.airline.setSignIn(options);
        const PollSummary summary = world.round();
        QCOMPARE(summary.errors.size(), 1);
        QVERIFY(world.state.loginStatus().isLoggedOut());
        QVERIFY2(world.log().contains(line), world.log().constData());
        QTRY_COMPARE(world.desktop.received.size(), 1);
        QVERIFY(world.desktop.received[0].body.startsWith(u"Automatisk innlogging feilet"_s));

        if (trouble != int(Trouble::None))
            return;
        // Rounds do nothing until half an hour is over; then everything is tried once more.
        const auto pages = world.airline.requests(world.airline.siteDomain()).size();
        world.round();
        const Ticks firstTry = world.clock.ticks();
        const auto pagesAfter = world.airline.requests(world.airline.siteDomain()).size();
        QVERIFY(pagesAfter > pages);
        world.round();
        QCOMPARE(world.airline.requests(world.airline.siteDomain()).size(), pagesAfter);
        QVERIFY(world.clock.ticks() - firstTry < 30min);
        world.airline.setSignIn(World::options().signIn);
        world.haveDetails();
        world.clock.advance(30min);
        world.round();
        QVERIFY(world.isLoggedIn());
    }

    void aNetworkThatIsGoneForAnHourAndThenForANight() {
        World world(m_runtime);
        world.haveDetails();
        QCOMPARE(world.round().errors, QStringList());
        const int signIns = world.airline.counters().passwordSignIns;
        const QString text = u"søk 1: Får ikke kontakt med SAS. Sjekk nettet – Tindra prøver igjen "
                             u"av seg selv."_s;
        // Gone in the middle of a round; what comes after finds nobody.
        connect(world.worker.get(), &Worker::changed, &world.state, [&world] {
            if (world.worker->isRunning() && world.worker->lookupDone() == 3)
                world.airline.stop();
        });
        const PollSummary cut = world.round();
        QVERIFY(cut.errors.value(0).endsWith(text.mid(7)));
        QVERIFY(cut.fetched > 0);
        for (const auto pause : {20min, 20min, 20min, 8h + 0min}) {
            world.clock.advance(pause);
            const PollSummary nothing = world.round();
            QCOMPARE(nothing.errors, QStringList{text});
            QCOMPARE(nothing.soldOut, 0);
            QVERIFY(world.state.isSiteUnreachable());
            QVERIFY(world.isLoggedIn());
        }
        world.worker->disconnect(&world.state);

        QCOMPARE(world.airline.start(), std::nullopt);
        const PollSummary back = world.round();
        QCOMPARE(back.errors, QStringList());
        QVERIFY(back.fetched > cut.fetched);
        QVERIFY(!world.state.isSiteUnreachable());
        QVERIFY(world.isLoggedIn());
        QCOMPARE(world.log().count("nettet: faar ikke kontakt med SAS\n"), 1);
        QCOMPARE(world.log().count("nettet: kontakt med SAS igjen\n"), 1);
        QVERIFY(world.desktop.received.isEmpty());
        QCOMPARE(world.airline.counters().passwordSignIns, signIns);
    }

    void singleSignOnWithoutOffersIsNotTrusted() {
        World world(m_runtime);
        world.haveDetails();
        QCOMPARE(world.round().errors, QStringList());
        auto options = World::options().signIn;
        options.isSsoWithoutOffers = true;
        world.airline.setSignIn(options);
        world.airline.expireSiteSession();
        world.clock.advance(6h);
        const PollSummary summary = world.round();
        QVERIFY(world.log().contains("SSO-fornyelse: SSO OK men offers ga INGEN data — "
                                     "poeng-sesjonen er doed, trenger ekte innlogging"));
        QCOMPARE(summary.errors.size(), 1);
    }
};

TINDRA_TEST_MAIN(TestSessionChain) {
    TestBus bus;
    const QCoreApplication application(argc, argv);
    if (!bus.startSecretService())
        qFatal("no Secret Service");
    QString problem;
    const auto runtime = WebKitRuntime::start(LinuxFolders(u"Tindra"_s), problem);
    if (!runtime)
        qFatal("%s", qPrintable(problem));
    TestSessionChain test(*runtime);
    return QTest::qExec(&test, argc, argv);
}
#include "test_session_chain.moc"
