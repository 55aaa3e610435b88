// SPDX-License-Identifier: MIT
// What the hunt says and how it ends, with an airline of recorded answers.
#include "airline/SessionState.h"
#include "app/ExitCode.h"
#include "app/Hunt.h"
#include "sharing/Sharing.h"
#include "tests/support/AppWorld.h"
#include "tests/support/RawSql.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestHuntRounds : public QObject {
    Q_OBJECT

    struct World : AppWorld {
        SessionState session;
        Sharing sharing{worker, community, finds, clock};
        QStringList results;
        QStringList said;
        Hunt hunt{database,
                  session,
                  worker,
                  sharing,
                  center,
                  clock,
                  true,
                  {[this](const QByteArray& line) { results.append(QString::fromUtf8(line)); },
                   [this](const QString& line) { said.append(line); }}};

        World() { database.settings().set(Setting::shareHits, false); }
        ~World() { settle(); }
        void add(QDate dateFrom = {2027, 3, 1}) {
            Search search;
            search.origin = u"OSL"_s;
            search.destination = u"CPH"_s;
            search.dateFrom = dateFrom;
            database.watchers().addSearch(search);
        }
        void signOut() {
            airline.status = SASLoginStatus::loggedOut();
            session.setLoggedOut(false);
        }
    };

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void exitCodes() {
        World world;
        QCOMPARE(*awaited(world.hunt.once()), int(ExitCode::done));
        QVERIFY(world.said.last().startsWith(u"Ingen aktive overvåkere"_s));
        world.add();
        world.airline.answer = [](const QString&, const QString&, const QString&) {
            return std::optional<QByteArray>(R"({"outboundFlights":{}})");
        };
        QCOMPARE(*awaited(world.hunt.once()), int(ExitCode::done));
        QVERIFY(world.said.last().startsWith(u"[1/1] Sjekker OSL → CPH — OSL→CPH (1 av 1)"_s));
        world.add({});
        QCOMPARE(*awaited(world.hunt.once()), int(ExitCode::watcherFailed));
        world.airline.answer = [&world](const QString&, const QString&, const QString&) {
            world.signOut();
            return std::optional<QByteArray>();
        };
        QCOMPARE(*awaited(world.hunt.once()), int(ExitCode::signedOut));
        QCOMPARE(world.results.size(), 4);
    }

    void whileTheAirlineAsksToBeLeftAlone() {
        World world;
        world.add();
        world.airline.outcome = [&world](const Leg&) {
            world.airline.refused = world.clock.now() + 15min;
            return Outcome{Outcome::Kind::refused, 429};
        };
        for (const int looks : {1, 1}) {
            QCOMPARE(*awaited(world.hunt.once()), int(ExitCode::refused));
            QCOMPARE(world.airline.looked.size(), looks);
            QVERIFY(world.results.last().contains(u"SAS ber oss vente til 12:15."_s));
        }
    }

    void anAssistedSignInEndsWithItsRound_data() {
        QTest::addColumn<bool>("isAnotherFaster");
        QTest::newRow("the round is its own") << false;
        QTest::newRow("whoever listens to the window begins one") << true;
    }
    void anAssistedSignInEndsWithItsRound() {
        QFETCH(const bool, isAnotherFaster);
        World world;
        world.add();
        world.airline.outcome = [&world](const Leg&) -> std::optional<Outcome> {
            if (world.airline.looked.size() > 1) {
                world.airline.status = SASLoginStatus::loggedIn(world.clock.now());
                return Outcome{Outcome::Kind::answer, 200, {}, {Fare()}};
            }
            // Automatic sign-in has left the window open.
            world.session.setLoginWindowOpen(true);
            world.signOut();
            return Outcome{Outcome::Kind::signedOut};
        };
        world.airline.verified = SASLoginStatus::loggedIn(world.clock.now());
        std::optional<int> code;
        world.hunt.once().then([&code](int found) { code = found; });
        world.clock.advance(5s);
        QVERIFY(!code);
        if (isAnotherFaster)
            connect(&world.session, &SessionState::loginWindowOpenChanged, &world.worker,
                    [&world] { world.worker.pollOnce(); });
        world.worker.forgetRevivalAttempt();
        world.session.setLoginWindowOpen(false);
        world.session.setLoginStatus(*world.airline.verified);
        world.clock.advance(5s);
        QCOMPARE(code, int(ExitCode::done));
        QCOMPARE(world.airline.looked.size(), 2);
        QVERIFY2(world.results.last().contains(u"\"fetched\":1"_s),
                 qPrintable(world.results.last()));
    }

    void theLoopSaysOnceWhatIsWrongWithStoring() {
        World world;
        world.hunt.start();
        settle();
        runOn(world.dir.path(), "CREATE TRIGGER full BEFORE INSERT ON kv "
                                "BEGIN SELECT RAISE(ABORT, 'no room'); END");
        world.database.safekeeping().note(Kept::toldBackground);
        world.clock.advance(25min);
        QCOMPARE(world.said.filter(u"no room"_s).size(), 1);
        awaited(world.hunt.stop());
    }

    void theLoopSaysOnceThatItIsSignedOut() {
        World world;
        world.add();
        world.airline.answer = [](const QString&, const QString&, const QString&) {
            return std::optional<QByteArray>(R"({"outboundFlights":{}})");
        };
        world.airline.verified = SASLoginStatus::loggedOut();
        world.hunt.start();
        settle();
        QCOMPARE(world.results.size(), 1);
        world.signOut();
        world.session.setLoginStatus(SASLoginStatus::checking());
        world.session.setLoggedOut(false);
        world.clock.advance(1h);
        QCOMPARE(world.said.filter(u"Utlogget hos SAS"_s).size(), 1);
        QCOMPARE(world.results.size(), 1);

        world.airline.status = SASLoginStatus::loggedIn(world.clock.now());
        world.session.setLoginStatus(world.airline.status);
        // The interval has a chance of its own.
        for (int minute = 0; minute < 11 && world.results.size() < 2; ++minute)
            world.clock.advance(1min);
        QCOMPARE(world.results.size(), 2);
        world.signOut();
        QCOMPARE(world.said.filter(u"Utlogget hos SAS"_s).size(), 2);
        awaited(world.hunt.stop());
        world.clock.advance(1h);
        QCOMPARE(world.results.size(), 2);
    }
};

TINDRA_TEST(TestHuntRounds)
#include "test_hunt_rounds.moc"
