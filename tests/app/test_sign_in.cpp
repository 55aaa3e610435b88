// SPDX-License-Identifier: MIT
// What follows when the user has finished with the sign-in window.
#include "airline/Capture.h"
#include "airline/LiveSession.h"
#include "airline/SessionState.h"
#include "airline/StandBack.h"
#include "app/SignIn.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "platform/MemorySecretStore.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "tests/support/FakeHostWindow.h"
#include "tests/support/FakeLegFetcher.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/FakeWebView.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestSignIn : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        Database database{dir.path(), clock};
        FakeNotificationCenter center;
        Notifier notifier{database, center, clock};
        FakeLegFetcher airline;
        SessionState state;
        Worker worker{database, airline, notifier, clock};
        FakeWebView view;
        FakeHostWindow hostWindow;
        MemorySecretStore secrets;
        Keychain keychain{secrets};
        Capture capture{view, clock, Site{}};
        StandBack standBack{database.safekeeping(), clock};
        LiveSession session{view,  hostWindow, clock,   database, keychain,
                            state, standBack,  capture, Site{}};
        SignIn signIn{session.window(), state,  standBack, database.watchers(),
                      airline,          worker, clock};
        std::optional<bool> works;

        ~World() { settle(); }
        void add() {
            Search search;
            search.origin = u"OSL"_s;
            search.destination = u"CPH"_s;
            search.dateFrom = QDate(2027, 3, 1);
            database.watchers().addSearch(search);
        }
        void open() {
            signIn.run().then([this](bool answer) { works = answer; });
            settle();
        }
        void finish() {
            Q_EMIT hostWindow.finished();
            settle();
        }
        /// Lookups that bring something, or nothing because the session is dead.
        void lookupsAnswer(bool alive) {
            airline.answer = [this, alive](const QString&, const QString&, const QString&) {
                airline.status =
                    alive ? SASLoginStatus::loggedIn(clock.now()) : SASLoginStatus::loggedOut();
                state.setLoginStatus(airline.status);
                return alive ? std::optional<QByteArray>(R"({"outboundFlights":{}})")
                             : std::nullopt;
            };
        }
    };

private Q_SLOTS:
    void aRoundConfirmsWhereThereIsOneToRun() {
        World world;
        world.add();
        world.lookupsAnswer(true);
        world.open();
        QVERIFY(world.hostWindow.visible);
        QVERIFY(!world.works);
        QVERIFY(world.airline.looked.isEmpty());
        world.finish();
        QCOMPARE(world.works, true);
        QCOMPARE(world.airline.looked.size(), 1);
        QCOMPARE(world.airline.verifications, 0);
        QVERIFY(!world.hostWindow.visible);
    }

    void aLookupConfirmsWhereNothingIsWatched() {
        World world;
        world.add();
        world.database.watchers().toggleSearch(world.database.watchers().listSearches().first().id);
        world.airline.verified = SASLoginStatus::loggedIn(world.clock.now());
        world.open();
        Q_EMIT world.hostWindow.finished();
        world.state.setLoginStatus(*world.airline.verified);
        settle();
        QCOMPARE(world.works, true);
        QCOMPARE(world.airline.verifications, 1);
        QVERIFY(world.airline.looked.isEmpty());

        world.works.reset();
        world.open();
        Q_EMIT world.hostWindow.closed();
        world.state.setLoggedOut(false);
        settle();
        QCOMPARE(world.works, false);
        QCOMPARE(world.airline.verifications, 2);
    }

    void whatIsUnderWayIsWaitedFor() {
        World world;
        world.add();
        world.lookupsAnswer(true);
        // A verification that began before, and a round that is only being prepared.
        world.airline.verifying = true;
        world.airline.heldLookup = 1;
        world.worker.pollOnce();
        world.open();
        world.finish();
        world.clock.advance(1s);
        QVERIFY(!world.works);
        world.airline.goOn.resolve(true);
        world.clock.advance(1s);
        QCOMPARE(world.airline.looked.size(), 1);
        world.airline.verifying = false;
        world.clock.advance(1s);
        QCOMPARE(world.works, true);
        QCOMPARE(world.airline.looked.size(), 2);
    }

    void whoHasJustSignedInNeedNotWaitForARefusalToEnd() {
        World world;
        world.add();
        world.lookupsAnswer(true);
        world.standBack.refuse({}, 429);
        world.open();
        world.finish();
        QVERIFY(!world.standBack.isOn());
        QCOMPARE(world.works, true);
    }

    void aSecondTryNeedNotWait() {
        World world;
        world.add();
        world.airline.verified = SASLoginStatus::loggedOut();
        world.lookupsAnswer(false);
        world.open();
        world.finish();
        QCOMPARE(world.works, false);
        // A round by itself tries to revive the session, in vain, and then not again for a while.
        world.worker.pollOnce();
        settle();
        world.worker.pollOnce();
        settle();
        QCOMPARE(world.airline.verifications, 1);

        world.works.reset();
        world.airline.verified = SASLoginStatus::loggedIn(world.clock.now());
        world.lookupsAnswer(true);
        world.open();
        world.finish();
        QCOMPARE(world.airline.verifications, 2);
        QCOMPARE(world.works, true);
    }
};

TINDRA_TEST(TestSignIn)
#include "test_sign_in.moc"
