// SPDX-License-Identifier: MIT
#include "airline/Capture.h"
#include "airline/SASEngine.h"
#include "airline/SessionKeeper.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/MemorySecretStore.h"
#include "tests/support/FakeWebView.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = Outcome::Kind;

namespace {

/// Notes what it is asked, answers as told in a later turn, and fails on renewals that nobody
/// expected.
class FakeKeeper final : public SessionKeeper {
public:
    void hideWindow() override { ++hidden; }
    QCoro::Task<> restoreCookiesIfNeeded() override { return noted(u"restore"_s); }
    QCoro::Task<> pruneCookiesIfStale() override { return noted(u"prune"_s); }
    void snapshotSoon() override { calls.append(u"snapshot"_s); }
    QCoro::Task<bool> silentSSORefresh(int maxSteps) override {
        calls.append(u"silent %1"_s.arg(maxSteps));
        if (whileRenewing)
            whileRenewing();
        co_await nextTurn();
        if (silent.isEmpty())
            QTest::qFail("nobody expected a silent renewal", __FILE__, __LINE__);
        co_return silent.takeFirst();
    }
    QCoro::Task<bool> attemptAutoLogin() override {
        calls.append(u"auto"_s);
        co_await nextTurn();
        if (automatic.isEmpty())
            QTest::qFail("nobody expected an automatic sign-in", __FILE__, __LINE__);
        co_return automatic.takeFirst();
    }

    int hidden = 0;
    QStringList calls;
    QList<bool> silent;
    QList<bool> automatic;
    std::function<void()> whileRenewing;

private:
    QCoro::Task<> noted(QString call) {
        calls.append(call);
        co_await nextTurn();
    }
};

const QByteArray someBody = R"({"outboundFlights":{}})";

QString offersAddress(const QString& date) {
    return u"/api/offers/flights?from=OSL&to=CPH&outDate="_s + date;
}

} // namespace

class TestEngine : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        FakeWebView view;
        MemorySecretStore secrets;
        Keychain keychain{secrets};
        Database database{dir.path(), clock};
        SessionState state;
        StandBack standBack{database.safekeeping(), clock};
        Site site{u"http://site.localhost:8080"_s, u"site.localhost"_s, u"id.localhost"_s, {}};
        Capture capture{view, clock, site};
        FakeKeeper keeper;
        bool isRoundRunning = false;
        SASEngine engine{view,     clock,  database.settings(),
                         keychain, state,  standBack,
                         capture,  keeper, [this] { return isRoundRunning; }};
        QList<LegFetcher::Aside> asides;
        QList<SignOut> signOuts;
        /// What the airline does when the page of a date is loaded.
        std::function<void(World&, const QString& date)> airline = &World::answer;
        QList<std::optional<Outcome>> outcomes;
        bool hasEnded = false;

        World() {
            // A session that was just renewed, so that nothing but the captures happens.
            state.lastSessionRefresh = clock.ticks();
            connect(&state, &SessionState::signedOut, &state,
                    [this](SignOut how) { signOuts.append(how); });
        }
        ~World() { settle(); }

        void answer(const QString& date) {
            view.arrive();
            view.sendFromHook(offersAddress(date), someBody);
        }
        void sayNothing(const QString&) { view.arrive(); }
        void askToSignIn(const QString&) {
            view.arrive(200, {}, QUrl(u"https://id.localhost/login"_s));
        }
        void beUnreachable(const QString&) {
            QMetaObject::invokeMethod(
                &view, [this] { Q_EMIT view.loadFailed(WebView::LoadFailure::unreachable); },
                Qt::QueuedConnection);
        }

        QCoro::Task<> batch(QList<Leg> legs) {
            const QPointer alive(&engine);
            const auto told = [this](LegFetcher::Aside aside) { asides.append(aside); };
            co_await engine.prepare(told);
            for (const Leg& leg : legs) {
                if (!alive)
                    co_return;
                const auto outcome = co_await engine.fetchLeg(leg, told);
                // The world may be gone before its batch.
                if (!alive)
                    co_return;
                outcomes.append(outcome);
                if (!outcome)
                    break;
            }
            engine.rest();
            hasEnded = true;
        }
        void start(int days) {
            outcomes.clear();
            hasEnded = false;
            QList<Leg> legs;
            for (int day = 1; day <= days; ++day)
                legs.append({{u"OSL"_s, u"CPH"_s}, QDate(2027, 3, day)});
            batch(legs);
            settle();
        }
        /// Plays the airline until `isOver`.
        void play(const std::function<bool()>& isOver) {
            static const QRegularExpression date(u"-(\\d{8})_a1c0i0y0"_s);
            for (int step = 0; !isOver() && step < 1000; ++step) {
                settle();
                if (view.loaded.size() > m_played) {
                    m_played = view.loaded.size();
                    const QString page = view.loaded.last().toString();
                    airline(*this, date.match(page).captured(1));
                    settle();
                    continue;
                }
                clock.advance(1s);
            }
            QVERIFY(isOver());
        }
        void play() {
            play([this] { return hasEnded; });
        }
        void run(int days) {
            start(days);
            play();
        }
        QList<Kind> kinds() const {
            QList<Kind> result;
            for (const auto& outcome : outcomes)
                result.append(outcome ? outcome->kind : Kind::silent);
            return result;
        }
        std::optional<Kind> verify() {
            std::optional<std::optional<Kind>> kind;
            engine.verifyLogin().then([&kind](std::optional<Kind> found) { kind = found; });
            play([&kind] { return kind.has_value(); });
            return kind.value_or(std::nullopt);
        }
        bool isSignedIn() const {
            return engine.loginStatus().state == SASLoginStatus::Case::loggedIn;
        }

    private:
        qsizetype m_played = 0;
    };

private Q_SLOTS:
    void construction() {
        World world;
        QCOMPARE(world.view.scriptHosts, QStringList{u"site.localhost"_s});
        QCOMPARE(world.view.word().size(), 32);
        QVERIFY(world.view.userAgent.contains(u"Version/17.4 Safari/605.1.15"_s));
        QVERIFY(World().view.word() != world.view.word());
    }

    void aBatchInOrder() {
        World world;
        world.run(2);
        QCOMPARE(world.kinds(), QList<Kind>(2, Kind::answer));
        QVERIFY(world.asides.isEmpty());
        QCOMPARE(world.keeper.calls,
                 QStringList({u"restore"_s, u"prune"_s, u"restore"_s, u"snapshot"_s}));
        QVERIFY(world.isSignedIn());
        QCOMPARE(world.view.unloads, 1);
        QCOMPARE(world.keeper.hidden, 1);
        QCOMPARE(world.clock.waiting(), 0);
    }

    void whatBecomesOfALook_data() {
        using Airline = std::function<void(World&)>;
        QTest::addColumn<Airline>("airline");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<int>("seconds");
        const auto row = [](const char* name, const Airline& airline, const Outcome& outcome,
                            int seconds) { QTest::newRow(name) << airline << outcome << seconds; };
        using Response = std::pair<QByteArray, int>;
        const auto responses = [](const QList<Response>& all, const QString& retryAfter = {}) {
            return [=](World& world) {
                world.view.arrive();
                for (const auto& [body, status] : all)
                    world.view.sendFromHook(offersAddress(u"20270301"_s), body, status, retryAfter);
            };
        };
        const auto response = [&responses](const QByteArray& body, int status = 200) {
            return responses({{body, status}});
        };
        const auto page = [](int status, const QString& retryAfter = {}, const QString& shown = {},
                             const QUrl& at = {}) {
            return [=](World& world) {
                if (!shown.isEmpty())
                    world.view.shown = shown;
                world.view.arrive(status, retryAfter, at);
            };
        };
        const QUrl provider(u"https://id.localhost/login"_s);
        row("an answer", response(someBody), {Kind::answer, 200}, 0);
        row("an error in JSON", response(R"({"errors":[{"code":"X"}]})"), {Kind::failed, 200}, 3);
        row("too many requests, with 200", response(R"({"message":"Too many requests"})"),
            {Kind::refused, 200}, 3);
        row("another flow's shape", response(R"({"outboundFlights":[]})"), {Kind::failed, 200}, 3);
        row("no JSON", response("<html>"), {Kind::failed, 200}, 3);
        row("no content", response("", 204), {Kind::failed, 204}, 3);
        row("offers with an error status", response(someBody, 500), {Kind::failed, 500}, 3);
        row("429", responses({{"{}", 429}}, u"120"_s), {Kind::refused, 429, u"120"_s}, 3);
        row("403", response("{}", 403), {Kind::refused, 403}, 3);
        row("503", response(someBody, 503), {Kind::refused, 503}, 3);
        row("401", response(R"({"error":"not signed in"})", 401), {Kind::signedOut, 401}, 3);
        row("a huge body", response(QByteArray(largestBody + 1, 'x')), {Kind::failed, 200}, 3);
        // As one does that is sent on to the identity provider's host.
        row("a request that broke", response("", 0), {Kind::silent, 0}, 10);
        row("a refusal, and then a request that broke", responses({{"{}", 429}, {"", 0}}),
            {Kind::refused, 429}, 3);
        row("an error, then the offers", responses({{"{}", 500}, {someBody, 200}}),
            {Kind::answer, 200}, 0);
        row("a page that refuses", page(429, u"soon"_s), {Kind::refused, 429, u"soon"_s}, 10);
        row("a page that refuses and says so", page(429, u"120"_s, u"page Too Many Requests"_s),
            {Kind::refused, 429, u"120"_s}, 10);
        row("a provider that refuses", page(429, u"120"_s, {}, provider),
            {Kind::refused, 429, u"120"_s}, 10);
        row("a page that fails", page(500), {Kind::failed, 500}, 10);
        row(
            "a challenge that lets us through",
            [answer = response(someBody)](World& world) {
                world.view.arrive(403);
                answer(world);
            },
            {Kind::answer, 200}, 0);
        row("a page that says so", page(200, {}, u"page Access Denied"_s), {Kind::refused}, 8);
        row("a sign-in form", page(200, {}, u"form"_s), {Kind::signedOut}, 8);
        row("the identity provider", page(200, {}, {}, provider), {Kind::signedOut}, 0);
        row("nothing", page(200), {Kind::silent}, 60);
        row("no page at all", [](World&) {}, {Kind::unreachable}, 60);
        row(
            "redirects without end",
            [](World& world) { Q_EMIT world.view.loadFailed(WebView::LoadFailure::unusable); },
            {Kind::failed}, 0);
        row(
            "a web process that dies",
            [](World& world) { Q_EMIT world.view.webProcessTerminated(); }, {Kind::failed}, 0);
    }
    void whatBecomesOfALook() {
        QFETCH(const std::function<void(World&)>, airline);
        QFETCH(const Outcome, outcome);
        QFETCH(const int, seconds);
        World world;
        world.start(1);
        airline(world);
        settle();
        if (seconds > 0) {
            world.clock.advance(std::chrono::seconds(seconds) - 1ms);
            QVERIFY(world.outcomes.isEmpty());
            world.clock.advance(1ms);
        }
        QCOMPARE(world.outcomes.size(), 1);
        QCOMPARE(world.outcomes.first(), std::optional(outcome));
        QCOMPARE(world.isSignedIn(), outcome.kind == Kind::answer);
        QCOMPARE(world.standBack.isOn(), outcome.kind == Kind::refused);
        QCOMPARE(world.state.isSiteUnreachable(), outcome.kind == Kind::unreachable);
        QCOMPARE(world.clock.waiting(), world.standBack.isOn() ? 1 : 0);
    }

    void theAwardFlow() {
        World world;
        world.batch({{{u"OSL"_s, u"CPH"_s}, QDate(2027, 3, 1), Flow::award}});
        settle();
        QCOMPARE(world.view.loaded.last().path(), u"/booking/award/flights"_s);
        world.view.arrive();
        world.view.sendFromHook(offersAddress(u"20270301"_s), someBody);
        settle();
        QVERIFY(world.outcomes.isEmpty());
        world.view.sendFromHook(
            u"/award-api/flights?origin=OSL&destination=CPH&outboundDate=2027-03-01"_s,
            R"({"outboundFlights":[]})");
        settle();
        QCOMPARE(world.kinds(), QList<Kind>{Kind::answer});
    }

    void onlyTheHooksOwnAnswerForTheLegCounts() {
        World world;
        world.start(1);
        const ScriptMessage right{u"sniff"_s,
                                  true,
                                  {{u"url"_s, offersAddress(u"20270301"_s).toUtf8()},
                                   {u"status"_s, "200"},
                                   {u"body"_s, someBody},
                                   {u"word"_s, world.view.word()}}};
        // From the page before: its strip of prices has asked for this day too.
        world.view.send(right);
        world.view.arrive();
        QList<ScriptMessage> wrong(6, right);
        wrong[0].handler = u"other"_s;
        wrong[1].isObject = false;
        wrong[2].texts.remove(u"body"_s);
        wrong[3].texts.remove(u"url"_s);
        wrong[4].texts.remove(u"word"_s);
        wrong[5].texts[u"word"_s] = "0123456789abcdef0123456789abcdef";
        for (const ScriptMessage& one : std::as_const(wrong))
            world.view.send(one);
        world.view.sendFromHook(offersAddress(u"20270302"_s), someBody);
        settle();
        QVERIFY(world.outcomes.isEmpty());
        world.view.send(right);
        settle();
        QCOMPARE(world.outcomes.size(), 1);
    }

    void aCaptureIsEndedByANewerOneAndLateAnswersAreNobodys() {
        World world;
        const Leg leg{{u"OSL"_s, u"CPH"_s}, QDate(2027, 3, 2)};
        QList<std::optional<Outcome>> older;
        QList<std::optional<Outcome>> newer;
        world.capture.capture(leg, 60s).then([&older](auto outcome) { older.append(outcome); });
        world.capture.capture({{u"OSL"_s, u"CPH"_s}, QDate(2027, 3, 3)}, 60s)
            .then([&newer](auto outcome) { newer.append(outcome); });
        world.view.arrive();
        world.view.sendFromHook(offersAddress(u"20270302"_s), someBody);
        settle();
        QCOMPARE(older, (QList<std::optional<Outcome>>{std::nullopt}));
        QVERIFY(newer.isEmpty());
        world.capture.end();
        settle();
        QCOMPARE(newer, (QList<std::optional<Outcome>>{std::nullopt}));
        QCOMPARE(world.clock.waiting(), 0);
    }

    void aBatchWaitsForTheWindowAndEndsWhenItOpens() {
        World world;
        world.state.setLoginWindowOpen(true);
        world.start(3);
        world.clock.advance(2500ms);
        QCOMPARE(world.asides, QList<LegFetcher::Aside>(3, LegFetcher::Aside::waitsForSignIn));
        QVERIFY(world.keeper.calls.isEmpty());
        world.state.setLoginWindowOpen(false);
        world.airline = [](World& self, const QString& date) {
            self.state.setLoginWindowOpen(self.view.loaded.size() == 2);
            self.answer(date);
        };
        world.clock.advance(500ms);
        world.play();
        QCOMPARE(world.outcomes.size(), 3);
        QVERIFY(world.outcomes[1] && !world.outcomes[2]);
        QCOMPARE(world.view.loaded.size(), 2);
        QCOMPARE(world.view.unloads, 0);
    }

    void whatEndsASession_data() {
        using Airline = std::function<void(World&, const QString&)>;
        QTest::addColumn<Airline>("airline");
        QTest::addColumn<QList<Kind>>("kinds");
        QTest::addColumn<int>("loads");
        const auto row = [](const char* name, const QList<Kind>& kinds, int loads,
                            const Airline& airline) {
            QTest::newRow(name) << airline << kinds << loads;
        };
        constexpr Kind ok = Kind::answer;
        constexpr Kind silent = Kind::silent;
        row("three silent looks", {silent, silent, ok, ok}, 5,
            [](World& world, const QString& date) {
                world.keeper.silent.isEmpty() ? world.answer(date) : world.sayNothing(date);
            });
        row("two that ask to sign in", {Kind::signedOut, ok, ok, ok}, 5,
            [](World& world, const QString& date) {
                world.keeper.silent.isEmpty() ? world.answer(date) : world.askToSignIn(date);
            });
        row("two that ask to sign in, after an answer", {ok, Kind::signedOut, ok, ok}, 5,
            [](World& world, const QString& date) {
                const bool isDead = world.view.loaded.size() > 1 && !world.keeper.silent.isEmpty();
                isDead ? world.askToSignIn(date) : world.answer(date);
            });
    }
    void whatEndsASession() {
        QFETCH(const std::function<void(World&, const QString&)>, airline);
        World world;
        world.clock.advance(1h);
        world.keeper.silent = {true};
        world.airline = airline;
        world.run(4);
        QTEST(world.kinds(), "kinds");
        QTEST(static_cast<int>(world.view.loaded.size()), "loads");
        QCOMPARE(world.keeper.calls.mid(3), QStringList({u"silent 12"_s, u"snapshot"_s}));
        QCOMPARE(world.asides, QList{LegFetcher::Aside::renewsSession});
        QVERIFY(world.clock.ticks() - *world.state.lastSessionRefresh < 2s);
        QVERIFY(world.signOuts.isEmpty());
        QVERIFY(world.isSignedIn());
    }

    void whatDoesNotEndASession() {
        using Airline = std::function<void(World&, const QString&)>;
        const Airline silentAfterAnAnswer = [](World& world, const QString& date) {
            date == u"20270302" ? world.answer(date) : world.sayNothing(date);
        };
        const Airline errors = [](World& world, const QString& date) {
            world.view.arrive();
            world.view.sendFromHook(offersAddress(date), "{}", 500);
        };
        const Airline singlePagesThatAskToSignIn = [](World& world, const QString& date) {
            date.endsWith(u'2') || date.endsWith(u'5') ? world.askToSignIn(date)
                                                       : world.answer(date);
        };
        for (const Airline& airline : {silentAfterAnAnswer, errors, singlePagesThatAskToSignIn}) {
            World world;
            world.airline = airline;
            world.run(6);
            QCOMPARE(world.outcomes.size(), 6);
            QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));
            QVERIFY(!world.engine.loginStatus().isLoggedOut());
        }
    }

    void whenNothingHelps() {
        struct Row {
            bool silent;
            bool automatic;
            bool hasDetails;
        };
        for (const auto& [silent, automatic, hasDetails] : {Row{false, false, false},
                                                            {false, false, true},
                                                            {true, false, false},
                                                            {false, true, true}}) {
            World world;
            world.keeper.silent = {silent};
            world.keeper.automatic = {automatic};
            world.airline = &World::sayNothing;
            world.database.settings().set(Setting::autoLogin, true);
            if (hasDetails)
                world.secrets.items.insert(u"app.tindra.Tindra.eurobonus"_s, {u"u"_s, "p"});
            world.run(3);
            QCOMPARE(world.kinds(), QList<Kind>({Kind::silent, Kind::silent, Kind::signedOut}));
            QCOMPARE(world.view.loaded.size(), silent || automatic ? 4 : 3);
            QCOMPARE(world.keeper.automatic.isEmpty(), !silent);
            QVERIFY(world.engine.loginStatus().isLoggedOut());
            QCOMPARE(world.signOuts, QList{hasDetails ? SignOut::autoLoginFailed : SignOut::plain});
        }
    }

    void theThirdStrikeWithTheWindowOpen() {
        World world;
        world.airline = [](World& self, const QString& date) {
            self.sayNothing(date);
            // As automatic sign-in leaves it: nobody has ended the look.
            self.state.setLoginWindowOpen(self.view.loaded.size() == 3);
        };
        world.run(3);
        QVERIFY(world.engine.loginStatus().isLoggedOut());
        QVERIFY(world.signOuts == QList{SignOut::windowWaits});
        QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));
    }

    void aNetworkThatIsGoneSaysNothingAboutTheSession() {
        World world;
        world.airline = &World::beUnreachable;
        world.run(1);
        QCOMPARE(world.kinds(), QList<Kind>{Kind::unreachable});
        QCOMPARE(world.view.loaded.size(), 3);
        QVERIFY(world.state.isSiteUnreachable());
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::unknown);
        // A verification learns nothing either, and asks nobody to sign in.
        const Ticks began = world.clock.ticks();
        QCOMPARE(world.verify(), Kind::unreachable);
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::unknown);
        QVERIFY(world.clock.ticks() - began < 45s);
        QVERIFY(world.signOuts.isEmpty());

        // It goes while the session is renewed.
        world.keeper.silent = {false};
        world.keeper.automatic = {false};
        world.keeper.whileRenewing = [&world] { world.beUnreachable({}); };
        world.airline = &World::askToSignIn;
        world.run(2);
        QCOMPARE(world.kinds(), QList<Kind>({Kind::signedOut, Kind::unreachable}));
        QVERIFY(world.signOuts.isEmpty());

        world.keeper.whileRenewing = {};
        world.airline = &World::answer;
        world.run(4);
        QVERIFY(!world.state.isSiteUnreachable());
        QCOMPARE(world.kinds(), QList<Kind>(4, Kind::answer));
        QVERIFY(world.isSignedIn());
    }

    void aNightOfSleepInTheMiddleOfABatch() {
        for (const int loadsWithoutNetwork : {0, 2}) {
            World world;
            bool hasSlept = false;
            world.airline = [&](World& self, const QString& date) {
                const auto loads = self.view.loaded.size();
                if (date == u"20270302" && !std::exchange(hasSlept, true)) {
                    self.sayNothing(date);
                    settle();
                    self.clock.suspend(9h);
                } else if (loads > 2 && loads <= 2 + loadsWithoutNetwork) {
                    self.beUnreachable(date);
                } else {
                    self.answer(date);
                }
            };
            world.run(4);
            // The page that was waited for in the evening is lost, and no more than that.
            QCOMPARE(world.kinds(),
                     QList<Kind>({Kind::answer, Kind::silent, Kind::answer, Kind::answer}));
            QVERIFY(!world.state.isSiteUnreachable());
            QVERIFY(world.signOuts.isEmpty());
            QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));
            QCOMPARE(world.clock.waiting(), 0);

            // The session is old by now.
            world.keeper.silent = {true};
            world.run(1);
            QVERIFY(world.keeper.calls.contains(u"silent 12"_s));
            QCOMPARE(world.kinds(), QList<Kind>{Kind::answer});
        }
    }

    void anOldSessionIsRenewedBeforeTheBatch() {
        using Airline = std::function<void(World&, const QString&)>;
        for (const auto& [airline, line] :
             {std::pair(Airline(&World::answer), u"bekreftet med ekte oppslag"_s),
              {&World::askToSignIn, u"poeng-sesjonen er doed, trenger ekte innlogging"_s},
              {&World::beUnreachable, u"nettstedet svarte ikke paa oppslaget"_s}}) {
            World world;
            world.clock.advance(5h);
            world.run(1);
            QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));

            TDLog::start(world.dir.path() + u"/ui.log"_s, &world.clock);
            world.clock.advance(2h);
            world.keeper.silent = {true};
            world.airline = airline;
            world.start(1);
            world.play(
                [&world] { return world.view.loaded.size() > 1 && !world.engine.isVerifying(); });
            QVERIFY(world.view.loaded.at(1).toString().contains(u"OSL-CPH-20270116"_s));
            for (int i = 0; i < 30; ++i) {
                if (world.view.loaded.size() < 5)
                    airline(world, u"20270116"_s);
                world.clock.advance(1s);
            }
            TDLog::start({}, nullptr);
            QFile log(world.dir.path() + u"/ui.log"_s);
            QVERIFY(log.open(QIODevice::ReadOnly));
            QVERIFY(QString::fromUtf8(log.readAll()).contains(line));
            QCOMPARE(world.clock.ticks() - *world.state.lastSessionRefresh < 1min,
                     line.contains(u"bekreftet"));
        }
    }

    void verification() {
        World world;
        world.isRoundRunning = true;
        QCOMPARE(world.verify(), std::nullopt);
        QVERIFY(world.view.loaded.isEmpty());
        world.isRoundRunning = false;

        world.engine.verifyLogin();
        world.engine.verifyLogin();
        settle();
        QCOMPARE(world.view.loaded.size(), 1);
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::checking);
        world.keeper.silent = {true};
        world.keeper.automatic = {false};
        world.view.arrive();
        world.clock.advance(45s);
        QCOMPARE(world.view.loaded.size(), 2);
        world.view.arrive();
        world.clock.advance(45s);
        QCOMPARE(world.keeper.calls, QStringList({u"restore"_s, u"silent 12"_s, u"auto"_s}));
        QVERIFY(world.engine.loginStatus().isLoggedOut());
        QCOMPARE(world.signOuts.size(), 1);

        // A batch that begins meanwhile waits for the verdict.
        QCOMPARE(world.view.unloads, 1);
        world.engine.verifyLogin();
        world.start(1);
        QCOMPARE(world.view.loaded.size(), 3);
        world.view.arrive();
        world.view.sendFromHook(offersAddress(u"20270116"_s), someBody);
        settle();
        QVERIFY(world.isSignedIn());
        QCOMPARE(world.keeper.calls.last(2), QStringList({u"restore"_s, u"snapshot"_s}));
        world.play();
        QCOMPARE(world.view.loaded.size(), 4);
    }

    void aVerificationThatRenewsAndThenSucceeds() {
        for (const bool silently : {true, false}) {
            World world;
            world.clock.advance(1h);
            world.keeper.silent = {silently};
            world.keeper.automatic = {true};
            world.airline = [](World& self, const QString& date) {
                self.view.loaded.size() == 1 ? self.askToSignIn(date) : self.answer(date);
            };
            QCOMPARE(world.verify(), Kind::answer);
            QVERIFY(world.isSignedIn());
            QVERIFY(world.signOuts.isEmpty());
            QCOMPARE(world.keeper.calls.contains(u"auto"_s), !silently);
            QCOMPARE(world.keeper.calls.last(), u"snapshot"_s);
            QCOMPARE(world.clock.ticks() - *world.state.lastSessionRefresh < 2s, silently);
        }
    }

    void aVerificationLeavesTheVerdictToTheUser() {
        World world;
        world.engine.verifyLogin();
        settle();
        world.state.setLoginWindowOpen(true);
        world.capture.end();
        settle();
        QCOMPARE(world.keeper.calls, QStringList{u"restore"_s});
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::unknown);
        QVERIFY(world.signOuts.isEmpty());
        QCOMPARE(world.view.unloads, 0);
    }

    void aRefusalIsNotSignedOut() {
        World world;
        world.airline = [](World& self, const QString& date) {
            self.view.arrive();
            self.view.sendFromHook(offersAddress(date), "{}", 429, u"1200"_s);
        };
        world.run(4);
        QCOMPARE(world.kinds(), QList<Kind>(4, Kind::refused));
        // Nothing more is looked at, and nobody signs in.
        QCOMPARE(world.view.loaded.size(), 1);
        QCOMPARE(world.verify(), Kind::refused);
        world.run(1);
        QCOMPARE(world.view.loaded.size(), 1);
        QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::unknown);
        QCOMPARE(world.engine.refusedUntil(), world.standBack.until());

        world.airline = &World::answer;
        world.clock.advance(20min);
        world.run(2);
        QCOMPARE(world.kinds(), QList<Kind>(2, Kind::answer));
    }

    void watchersOfOneDateFindOutTogether() {
        World world;
        world.keeper.silent = {false};
        world.keeper.automatic = {false};
        world.airline = &World::askToSignIn;
        world.run(1);
        QVERIFY(!world.engine.loginStatus().isLoggedOut());
        world.run(1);
        QVERIFY(world.engine.loginStatus().isLoggedOut());
        QCOMPARE(world.signOuts.size(), 1);
    }

    void aRefusalWhileRenewingEndsIt() {
        for (const bool verifies : {false, true}) {
            World world;
            world.airline = &World::askToSignIn;
            world.keeper.silent = {false};
            world.keeper.whileRenewing = [&world] {
                world.view.arrive(429, u"600"_s, QUrl(u"https://id.localhost/login"_s));
            };
            if (verifies) {
                QCOMPARE(world.verify(), Kind::refused);
            } else {
                world.run(2);
                QCOMPARE(world.kinds(), QList<Kind>({Kind::signedOut, Kind::refused}));
            }
            QVERIFY(world.standBack.isOn());
            QVERIFY(!world.keeper.calls.contains(u"auto"_s));
            QVERIFY(!world.engine.loginStatus().isLoggedOut());
            QVERIFY(world.signOuts.isEmpty());
        }
        // A sign-in's 403 may be a challenge that lets people through.
        World world;
        bool standsBack = false;
        world.airline = [&standsBack](World& self, const QString& date) {
            standsBack = standsBack || self.standBack.isOn();
            self.view.loaded.size() == 1 ? self.askToSignIn(date) : self.answer(date);
        };
        world.keeper.silent = {true};
        world.keeper.whileRenewing = [&world] {
            world.view.arrive(403, {}, QUrl(u"https://id.localhost/login"_s));
        };
        QCOMPARE(world.verify(), Kind::answer);
        QVERIFY(!standsBack);
    }

    void aVerificationKeepsItsPage() {
        World world;
        world.engine.verifyLogin();
        settle();
        // As a round does that has nothing to look at.
        world.engine.rest();
        QCOMPARE(world.view.unloads, 0);
        world.view.arrive();
        world.view.sendFromHook(offersAddress(u"20270116"_s), someBody);
        settle();
        QCOMPARE(world.view.unloads, 1);
    }

    void anEngineThatGoesAwayInTheMiddle() {
        auto world = std::make_unique<World>();
        world->start(2);
        QCOMPARE(world->view.loaded.size(), 1);
        world.reset();
        settle();
    }
};

TINDRA_TEST(TestEngine)
#include "test_engine.moc"
