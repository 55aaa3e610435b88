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

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Notes what it is asked, answers as told in a later turn, and fails on renewals that nobody
/// expected.
class FakeKeeper final : public SessionKeeper {
public:
    void hideWindow() override { ++hidden; }
    QCoro::Task<> restoreCookiesIfNeeded() override { return noted(u"restore"_s); }
    QCoro::Task<> pruneCookiesIfStale() override { return noted(u"prune"_s); }
    QCoro::Task<> snapshotCookies() override { return noted(u"snapshot"_s); }
    QCoro::Task<bool> silentSSORefresh(int maxSteps) override {
        calls.append(u"silent %1"_s.arg(maxSteps));
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

private:
    QCoro::Task<> noted(QString call) {
        calls.append(call);
        co_await nextTurn();
    }
};

const QByteArray someBody = R"({"outboundFlights":{}})";

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
        Site site{u"http://site.localhost:8080"_s, u"site.localhost"_s, {}, {}};
        Capture capture{view, clock, site};
        FakeKeeper keeper;
        SASEngine engine{view, clock, database, keychain, state, capture, &keeper};
        QStringList progress;
        QStringList notices;
        /// Which dates the airline answers for; the others run into their time-out.
        std::function<bool(const QString& date)> answers = [](const QString&) { return true; };
        /// Whether pages can be fetched.
        std::function<bool()> hasNetwork = [] { return true; };
        std::function<bool()> shouldAbort;
        std::optional<FetchedLegs> fetched;

        World() {
            // A session that was just renewed, so that nothing but the captures happens.
            state.lastSessionRefresh = clock.ticks();
            connect(&state, &SessionState::notice, &state,
                    [this](const QString& title, const QString& body) {
                        notices.append(title + u": "_s + body);
                    });
        }
        ~World() { settle(); }

        void start(const QList<LegGroup>& legs, bool award = false) {
            engine
                .fetchLegs(
                    legs, award, [this] { return shouldAbort && shouldAbort(); },
                    [this](const QString& label, const QString& date) {
                        progress.append(label + u' ' + date);
                    })
                .then([this, alive = QPointer(&engine)](const FetchedLegs& result) {
                    // The world may be gone before its batch.
                    if (alive)
                        fetched = result;
                });
            settle();
        }
        static QString dateOf(const QUrl& page) {
            static const QRegularExpression date(u"(\\d{8})_a1c0i0y0"_s);
            return date.match(page.toString()).captured(1);
        }
        /// Plays the airline until the batch has ended.
        void play() {
            qsizetype seen = 0;
            for (int step = 0; !fetched && step < 1000; ++step) {
                settle();
                if (view.loaded.size() > seen) {
                    seen = view.loaded.size();
                    if (!hasNetwork()) {
                        QMetaObject::invokeMethod(
                            &view, [this] { Q_EMIT view.loadFailed(); }, Qt::QueuedConnection);
                        continue;
                    }
                    const QString date = dateOf(view.loaded.last());
                    if (answers(date)) {
                        view.sendFromHook(u"/api/offers/flights?from=OSL&to=CPH&outDate="_s + date,
                                          someBody);
                        continue;
                    }
                }
                clock.advance(1s);
            }
            QVERIFY(fetched);
        }
        FetchedDates dates(const QString& leg = u"OSL-CPH"_s) const { return fetched->value(leg); }
    };

    static QList<LegGroup> days(int count) {
        LegGroup leg{u"OSL"_s, u"CPH"_s, {}};
        for (int day = 1; day <= count; ++day)
            leg.dates.append(u"202703%1"_s.arg(day, 2, 10, QChar(u'0')));
        return {leg};
    }

private Q_SLOTS:
    void construction() {
        World world;
        QCOMPARE(world.view.scriptHosts, QStringList{u"site.localhost"_s});
        QCOMPARE(world.view.handlers, QStringList{u"sniff"_s});
        QCOMPARE(world.view.word().size(), 32);
        QVERIFY(world.view.userAgent.contains(u"Version/17.4 Safari/605.1.15"_s));
        QVERIFY(World().view.word() != world.view.word());

        TDLog::start(world.dir.path() + u"/ui.log"_s, &world.clock);
        const auto construct = [&world] {
            const SASEngine other(world.view, world.clock, world.database, world.keychain,
                                  world.state, world.capture, nullptr);
        };
        construct();
        world.view.hasTrackingPreventionSwitch = false;
        construct();
        TDLog::start({}, nullptr);
        QFile log(world.dir.path() + u"/ui.log"_s);
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromUtf8(log.readAll()).split(u'\n');
        QVERIFY(lines[0].endsWith(u"Z ITP slaatt av for soeke-webviewen"_s));
        QVERIFY(lines[1].endsWith(
            u"Z ITP: fant ikke av-bryteren i WebKit — sporingsvern forblir paa"_s));
    }

    void aBatchInOrder() {
        World world;
        world.start(days(2) + QList<LegGroup>{{u"CPH"_s, u"OSL"_s, {}}});
        world.play();
        QCOMPARE(world.dates(),
                 (FetchedDates{{u"20270301"_s, someBody}, {u"20270302"_s, someBody}}));
        QVERIFY(world.fetched->contains(u"CPH-OSL"_s));
        QCOMPARE(world.progress, QStringList({u"OSL→CPH 20270301"_s, u"OSL→CPH 20270302"_s}));
        QCOMPARE(world.keeper.calls,
                 QStringList({u"restore"_s, u"prune"_s, u"restore"_s, u"snapshot"_s}));
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::loggedIn);
        QCOMPARE(world.view.unloads, 1);
        QCOMPARE(world.keeper.hidden, 1);
        QCOMPARE(world.clock.waiting(), 0);
    }

    void aRouteThatComesTwiceKeepsAllItsDates() {
        World world;
        const QStringList dates = days(2).first().dates;
        world.start({{u"OSL"_s, u"CPH"_s, {dates[1]}},
                     {u"OSL"_s, u"ARN"_s, {}},
                     {u"OSL"_s, u"CPH"_s, {dates[0]}}});
        world.play();
        QCOMPARE(world.dates().keys(), dates);
    }

    void anEmptyBatchOnlyPrepares() {
        World world;
        world.start({});
        world.play();
        QVERIFY(world.fetched->isEmpty());
        QCOMPARE(world.keeper.calls, QStringList({u"restore"_s, u"prune"_s, u"restore"_s}));
        QVERIFY(world.view.loaded.isEmpty());
    }

    void theAwardFlow() {
        World world;
        world.start(days(1), true);
        QCOMPARE(world.view.loaded.last().toString(),
                 u"http://site.localhost:8080/booking/award/flights?origin=OSL&destination=CPH"
                 u"&outboundDate=2027-03-01&adults=1"_s);
        world.view.sendFromHook(u"/api/offers/flights?from=OSL&to=CPH&outDate=20270301"_s, "no");
        world.view.sendFromHook(
            u"/award-api/flights?origin=OSL&destination=CPH&outboundDate=2027-03-01"_s, "yes");
        settle();
        QCOMPARE(world.dates(), (FetchedDates{{u"20270301"_s, "yes"}}));
    }

    void onlyTheHooksOwnAnswerForTheLegCounts() {
        World world;
        world.start(days(1));
        const QString url = u"/api/offers/flights?from=OSL&to=CPH&outDate=20270301"_s;
        const QByteArray word = world.view.word();
        const auto message = [&](const QByteArray& itsWord) {
            return ScriptMessage{
                u"sniff"_s,
                true,
                {{u"url"_s, url.toUtf8()}, {u"body"_s, "forged"}, {u"word"_s, itsWord}}};
        };
        world.view.send(message({}));
        world.view.send(message("0123456789abcdef0123456789abcdef"));
        auto wrong = message(word);
        wrong.handler = u"other"_s;
        world.view.send(wrong);
        wrong = message(word);
        wrong.isObject = false;
        world.view.send(wrong);
        wrong = message(word);
        wrong.texts.remove(u"body"_s);
        world.view.send(wrong);
        wrong = message(word);
        wrong.texts.remove(u"url"_s);
        world.view.send(wrong);
        world.view.sendFromHook(u"/api/offers/flights?from=OSL&to=CPH&outDate=20270302"_s, "late");
        settle();
        QVERIFY(!world.fetched);

        world.view.sendFromHook(url, "first");
        world.view.sendFromHook(url, "second");
        settle();
        QCOMPARE(world.dates(), (FetchedDates{{u"20270301"_s, "first"}}));
    }

    void aHugeBodyIsHandedOverEmpty() {
        World world;
        world.start(days(1));
        world.view.sendFromHook(u"/api/offers/flights?from=OSL&to=CPH&outDate=20270301"_s,
                                QByteArray(largestBody + 1, 'x'));
        settle();
        QCOMPARE(world.dates(), (FetchedDates{{u"20270301"_s, QByteArray()}}));
    }

    void aCaptureEndsAtItsTimeOut() {
        World world;
        std::optional<Capture::Body> body;
        world.capture.capture(u"OSL"_s, u"CPH"_s, u"20270302"_s, false, 60s)
            .then([&body](Capture::Body result) { body = result; });
        world.clock.advance(59999ms);
        QVERIFY(!body);
        world.clock.advance(1ms);
        QVERIFY(body && !*body);
        // A late answer belongs to nobody, not even to the next capture.
        world.view.sendFromHook(u"/api/offers/flights?from=OSL&to=CPH&outDate=20270302"_s, "late");
        std::optional<Capture::Body> next;
        world.capture.capture(u"OSL"_s, u"CPH"_s, u"20270303"_s, false, 60s)
            .then([&next](Capture::Body result) { next = result; });
        settle();
        QVERIFY(!next);
        world.capture.end();
        settle();
        QVERIFY(next && !*next);
    }

    void aNewerCaptureSupersedesAndADeadProcessEndsIt() {
        World world;
        QList<Capture::Body> older;
        QList<Capture::Body> newer;
        world.capture.capture(u"OSL"_s, u"CPH"_s, u"20270301"_s, false, 60s)
            .then([&older](Capture::Body body) { older.append(body); });
        world.capture.capture(u"OSL"_s, u"CPH"_s, u"20270302"_s, false, 60s)
            .then([&newer](Capture::Body body) { newer.append(body); });
        settle();
        QCOMPARE(older, QList<Capture::Body>{std::nullopt});
        QVERIFY(newer.isEmpty());
        Q_EMIT world.view.webProcessTerminated();
        settle();
        QCOMPARE(newer, QList<Capture::Body>{std::nullopt});
        QCOMPARE(world.clock.waiting(), 0);
    }

    void anAbortKeepsWhatIsThere() {
        World world;
        world.shouldAbort = [&world] { return world.view.loaded.size() == 2; };
        world.start(days(2) + QList<LegGroup>{{u"CPH"_s, u"OSL"_s, {u"20270310"_s}}});
        world.play();
        QCOMPARE(world.dates().size(), 2);
        QVERIFY(world.fetched->contains(u"CPH-OSL"_s));
        QVERIFY(world.dates(u"CPH-OSL"_s).isEmpty());
        QVERIFY(!world.keeper.calls.contains(u"snapshot"_s));
    }

    void aBatchWaitsForTheWindowAndEndsWhenItOpens() {
        World world;
        world.state.setLoginWindowOpen(true);
        world.start(days(3));
        world.clock.advance(2500ms);
        QCOMPARE(world.progress,
                 QStringList({u"venter på innlogging "_s, u"venter på innlogging "_s,
                              u"venter på innlogging "_s}));
        QVERIFY(world.keeper.calls.isEmpty());
        world.state.setLoginWindowOpen(false);
        world.answers = [&world](const QString&) {
            world.state.setLoginWindowOpen(world.view.loaded.size() == 2);
            return true;
        };
        world.clock.advance(500ms);
        world.play();
        QCOMPARE(world.dates().keys(), QStringList({u"20270301"_s, u"20270302"_s}));
        QCOMPARE(world.view.unloads, 0);
    }

    void threeStrikesThenASilentRenewal() {
        World world;
        world.clock.advance(1h);
        world.keeper.silent = {true};
        world.answers = [&world](const QString&) { return world.view.loaded.size() > 3; };
        world.start(days(4));
        world.play();
        QCOMPARE(world.view.loaded.size(), 5);
        QVERIFY(!world.dates()[u"20270302"_s]);
        QVERIFY(world.dates()[u"20270303"_s]);
        QVERIFY(world.dates()[u"20270304"_s]);
        QCOMPARE(world.keeper.calls.mid(3), QStringList({u"silent 12"_s, u"snapshot"_s}));
        QVERIFY(world.progress.contains(u"logger inn på nytt "_s));
        QVERIFY(world.clock.ticks() - *world.state.lastSessionRefresh < 2s);
        QVERIFY(world.notices.isEmpty());
    }

    void strikesAfterASuccessAreOnlyRecorded() {
        World world;
        world.answers = [](const QString& date) { return date == u"20270302"; };
        world.start(days(6));
        world.play();
        QCOMPARE(world.dates().size(), 6);
        QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::loggedIn);
    }

    void whenNothingHelps_data() {
        QTest::addColumn<bool>("silent");
        QTest::addColumn<bool>("automatic");
        QTest::addColumn<bool>("hasDetails");
        QTest::addColumn<QString>("prefix");
        const QString failed =
            u"Automatisk innlogging feilet — sjekk EuroBonus-detaljene i Innstillinger. "_s;
        QTest::newRow("both renewals fail") << false << false << false << u""_s;
        QTest::newRow("with details") << false << false << true << failed;
        QTest::newRow("renewed, still empty") << true << false << false << u""_s;
        QTest::newRow("signed in, still empty") << false << true << true << failed;
    }
    void whenNothingHelps() {
        QFETCH(bool, silent);
        QFETCH(bool, automatic);
        QFETCH(bool, hasDetails);
        QFETCH(QString, prefix);
        World world;
        world.keeper.silent = {silent};
        world.keeper.automatic = {automatic};
        world.answers = [](const QString&) { return false; };
        world.database.set(u"auto_login"_s, u"1"_s);
        if (hasDetails)
            world.secrets.items.insert(u"app.tindra.Tindra.eurobonus"_s, {u"u"_s, "p"});
        world.start(days(9));
        world.play();
        QCOMPARE(world.dates().keys(), QStringList({u"20270301"_s, u"20270302"_s, u"20270303"_s}));
        QCOMPARE(world.view.loaded.size(), silent || automatic ? 4 : 3);
        QCOMPARE(world.keeper.automatic.isEmpty(), !silent);
        QVERIFY(world.engine.loginStatus().isLoggedOut());
        QCOMPARE(world.notices, QStringList{u"⚠️ Logget ut av SAS: "_s + prefix +
                                            u"Søkene får ingen data før du er innlogget igjen."_s});
        world.state.setLoggedOut(hasDetails);
        QCOMPARE(world.notices.size(), 1);
    }

    void aNetworkThatIsGoneSaysNothingAboutTheSession() {
        World world;
        bool isUp = false;
        world.hasNetwork = [&isUp] { return isUp; };
        world.start(days(4));
        world.play();
        QCOMPARE(world.view.loaded.size(), 3);
        QVERIFY(world.engine.isSiteUnreachable());
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::unknown);
        // A verification learns nothing either, and asks nobody to sign in.
        const Ticks began = world.clock.ticks();
        world.fetched.reset();
        world.engine.verifyLogin();
        for (int i = 0; i < 30; ++i) {
            Q_EMIT world.view.loadFailed();
            world.clock.advance(1s);
        }
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::unknown);
        QVERIFY(world.clock.ticks() - began < 45s);
        QVERIFY(world.notices.isEmpty());

        isUp = true;
        world.start(days(4));
        world.play();
        QVERIFY(!world.engine.isSiteUnreachable());
        QCOMPARE(world.dates().size(), 4);
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::loggedIn);
    }

    void aNightOfSleepInTheMiddleOfABatch_data() {
        QTest::addColumn<int>("loadsWithoutNetwork");
        QTest::newRow("the network is there at once") << 0;
        QTest::newRow("the network needs some seconds") << 2;
    }
    void aNightOfSleepInTheMiddleOfABatch() {
        QFETCH(const int, loadsWithoutNetwork);
        World world;
        bool hasSlept = false;
        world.answers = [&](const QString& date) {
            if (date == u"20270302" && !std::exchange(hasSlept, true)) {
                world.clock.suspend(9h);
                return false;
            }
            return true;
        };
        world.hasNetwork = [&] {
            return world.view.loaded.size() <= 2 ||
                   world.view.loaded.size() > 2 + loadsWithoutNetwork;
        };
        world.start(days(4));
        world.play();
        // The page that was waited for in the evening is lost, and no more than that.
        QCOMPARE(world.dates().size(), 4);
        for (const QString& date : {u"20270301"_s, u"20270303"_s, u"20270304"_s})
            QVERIFY(world.dates()[date]);
        QVERIFY(!world.engine.isSiteUnreachable());
        QVERIFY(world.notices.isEmpty());
        QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));
        QCOMPARE(world.clock.waiting(), 0);

        // The session is old by now.
        world.fetched.reset();
        world.keeper.silent = {true};
        world.start(days(1));
        world.play();
        QVERIFY(world.keeper.calls.contains(u"silent 12"_s));
        QVERIFY(world.dates()[u"20270301"_s]);
    }

    void anOldSessionIsRenewedBeforeTheBatch() {
        World world;
        world.clock.advance(5h);
        world.start(days(1));
        world.play();
        QVERIFY(!world.keeper.calls.contains(u"silent 12"_s));

        world.fetched.reset();
        world.clock.advance(2h);
        world.keeper.silent = {true};
        world.start(days(1));
        world.play();
        QCOMPARE(world.keeper.calls.last(5), QStringList({u"prune"_s, u"restore"_s, u"silent 12"_s,
                                                          u"snapshot"_s, u"snapshot"_s}));
        QVERIFY(world.view.loaded.at(1).toString().contains(u"OSL-CPH-20270116"_s));
        QVERIFY(world.clock.ticks() - *world.state.lastSessionRefresh < 2s);
    }

    void verification() {
        World world;
        bool isRunning = true;
        world.engine.setRoundQuestion([&isRunning] { return isRunning; });
        world.engine.verifyLogin();
        settle();
        QVERIFY(world.view.loaded.isEmpty());
        isRunning = false;

        world.engine.verifyLogin();
        world.engine.verifyLogin();
        settle();
        QCOMPARE(world.view.loaded.size(), 1);
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::checking);
        world.keeper.silent = {true};
        world.keeper.automatic = {false};
        world.clock.advance(45s);
        QCOMPARE(world.view.loaded.size(), 2);
        world.clock.advance(45s);
        QCOMPARE(world.keeper.calls, QStringList({u"restore"_s, u"silent 12"_s, u"auto"_s}));
        QVERIFY(world.engine.loginStatus().isLoggedOut());
        QCOMPARE(world.notices.size(), 1);

        // A batch that begins meanwhile waits for the verdict.
        QCOMPARE(world.view.unloads, 1);
        world.engine.verifyLogin();
        world.start(days(1));
        QCOMPARE(world.view.loaded.size(), 3);
        world.view.sendFromHook(u"/api/offers/flights?from=OSL&to=CPH&outDate=20270116"_s,
                                someBody);
        settle();
        QVERIFY(world.engine.loginStatus().state == SASLoginStatus::Case::loggedIn);
        QCOMPARE(world.keeper.calls.last(2), QStringList({u"restore"_s, u"snapshot"_s}));
        world.play();
        QCOMPARE(world.view.loaded.size(), 4);
    }

    void aVerificationLeavesTheVerdictToTheUser() {
        World world;
        world.engine.verifyLogin();
        settle();
        world.state.setLoginWindowOpen(true);
        world.capture.end();
        settle();
        QCOMPARE(world.keeper.calls, QStringList{u"restore"_s});
        QVERIFY(!world.engine.loginStatus().isLoggedOut());
        QVERIFY(world.notices.isEmpty());
        QCOMPARE(world.view.unloads, 0);
    }

    void anEngineThatGoesAwayInTheMiddle() {
        auto world = std::make_unique<World>();
        world->start(days(2));
        QCOMPARE(world->view.loaded.size(), 1);
        world.reset();
        settle();
    }
};

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
