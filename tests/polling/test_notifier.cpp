// SPDX-License-Identifier: MIT
#include "core/Database.h"
#include "polling/Notifier.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/ManualClock.h"
#include "tests/support/RawSql.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestNotifier : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        Database database{dir.path(), clock};
        FakeNotificationCenter center;
        Notifier notifier{database, center, clock};
    };

    static Match offer() {
        Match match;
        match.key = FareKey::fromText(u"2027-03-14-OSL-BKK-SK1467"_s);
        match.fromCity = u"Oslo"_s;
        match.toCity = u"Bangkok"_s;
        match.cabin = Cabin::business;
        match.seats = 2;
        match.points = 75000;
        match.depart = {{2027, 3, 14}, {9, 5}};
        match.arrive = {{2027, 3, 15}, {6, 10}};
        match.stops = Stops{1, {u"CPH"_s}};
        match.bookingURL = u"https://www.sas.no/book"_s;
        return match;
    }

    static SoldOut gone(CabinSet cabins) {
        SoldOut record;
        record.key = offer().key;
        record.cabins = cabins;
        record.label = u"OSL-BKK 2027-03-14 · SK1467"_s;
        return record;
    }

private Q_SLOTS:
    void texts() {
        World world;
        world.notifier.notifyNewFare(offer());
        const QString description = u"Business · 2 seter · 75\u00a0000 poeng\n"
                                    u"14.03 09:05 → 15.03 06:10 · 1 stopp (CPH)"_s;
        QCOMPARE(world.center.posted.last(),
                 (Notification{u"✈️ Ny bonusreise: Oslo → Bangkok"_s, description,
                               u"2027-03-14-OSL-BKK-SK1467#business"_s, u"Book på SAS"_s}));

        Match unbookable = offer();
        unbookable.bookingURL.clear();
        world.notifier.notifyCommunityFare(unbookable);
        QCOMPARE(world.center.posted.last(),
                 (Notification{u"👥 Fellesskapet fant: Oslo → Bangkok"_s,
                               description + u" — book raskt, plassene forsvinner fort"_s,
                               u"2027-03-14-OSL-BKK-SK1467#business"_s,
                               {}}));

        world.notifier.notifySoldOut(gone({Cabin::economy, Cabin::business, Cabin::premeco}));
        QCOMPARE(world.center.posted.last(),
                 (Notification{u"🔴 Utsolgt"_s,
                               u"OSL-BKK 2027-03-14 · SK1467\n"
                               u"Business, Premium, Økonomi er ikke lenger tilgjengelig"_s}));

        Match cheap = offer();
        cheap.cabin = Cabin::economy;
        cheap.points = 0;
        cheap.seats = 4;
        world.notifier.notifyNewFare(cheap);
        QCOMPARE(world.center.posted.last().body.section(u'\n', 0, 0), u"Økonomi · 4 seter"_s);

        const QString end = u"Søkene får ingen data før du er innlogget igjen."_s;
        const auto told = [&world](SignOut how) {
            world.notifier.notifySignedOut(how);
            return world.center.posted.last().body;
        };
        QCOMPARE(told(SignOut::plain), end);
        QCOMPARE(world.center.posted.last().title, u"⚠️ Logget ut av SAS"_s);
        QCOMPARE(told(SignOut::windowWaits),
                 u"Automatisk innlogging trenger et dytt — fullfør i innloggingsvinduet som står "
                 u"åpent. "_s +
                     end);
        QCOMPARE(told(SignOut::autoLoginFailed),
                 u"Automatisk innlogging feilet — sjekk EuroBonus-detaljene i Innstillinger. "_s +
                     end);
    }

    void repeats() {
        World world;
        world.notifier.notifyNewFare(offer());
        world.clock.advance(3h - 1ms);
        world.notifier.notifyNewFare(offer());
        QCOMPARE(world.center.posted.size(), 1);
        Match other = offer();
        other.cabin = Cabin::first;
        world.notifier.notifyNewFare(other);
        QCOMPARE(world.center.posted.size(), 2);
        world.clock.advance(1ms);
        world.notifier.notifyNewFare(offer());
        QCOMPARE(world.center.posted.size(), 3);
        // What is said of others' finds and of sold-out offers is not filtered.
        for (int i = 0; i < 2; ++i) {
            Match unbookable = offer();
            unbookable.bookingURL.clear();
            world.notifier.notifyCommunityFare(unbookable);
            world.notifier.notifySoldOut(gone({Cabin::first}));
        }
        QCOMPARE(world.center.posted.size(), 7);
    }

    void settings() {
        World world;
        world.database.settings().set(Setting::notifySoldOut, false);
        world.notifier.notifySoldOut(gone({Cabin::first}));
        QVERIFY(world.center.posted.isEmpty());
        world.notifier.notifyNewFare(offer());
        QCOMPARE(world.center.posted.size(), 1);

        world.database.settings().set(Setting::nativeNotify, false);
        world.database.settings().set(Setting::notifySoldOut, true);
        Match other = offer();
        other.cabin = Cabin::first;
        world.notifier.notifyNewFare(other);
        world.notifier.notifySoldOut(gone({Cabin::first}));
        Match unbookable = offer();
        unbookable.bookingURL.clear();
        world.notifier.notifyCommunityFare(unbookable);
        QCOMPARE(world.center.posted.size(), 1);
        // Switched on again, the filter still remembers what it let pass in silence.
        world.database.settings().set(Setting::nativeNotify, true);
        world.notifier.notifyNewFare(other);
        QCOMPARE(world.center.posted.size(), 1);
    }

    void whatACrashLeftUntold_data() {
        QTest::addColumn<std::chrono::minutes>("age");
        QTest::addColumn<CabinSet>("seenSince");
        QTest::addColumn<bool>("isSoldOut");
        QTest::addColumn<bool>("isTold");
        const CabinSet business{Cabin::business};
        QTest::newRow("a find that still stands") << 179min << business << false << true;
        QTest::newRow("too old") << 181min << business << false << false;
        QTest::newRow("gone meanwhile") << 5min << CabinSet{Cabin::economy} << false << false;
        QTest::newRow("sold out") << 5min << CabinSet{Cabin::economy} << true << true;
        QTest::newRow("sold out, and back") << 5min << business << true << false;
    }
    void whatACrashLeftUntold() {
        QFETCH(const std::chrono::minutes, age);
        QFETCH(const CabinSet, seenSince);
        QFETCH(const bool, isSoldOut);
        QFETCH(const bool, isTold);
        World world;
        world.database.watchers().addSearch(Search());
        Match match = offer();
        match.searchId = 1;
        match.foundAt = world.clock.now();
        SoldOut record = gone({match.cabin});
        record.searchId = 1;
        record.foundAt = match.foundAt;
        constexpr auto isDue = OfferStore::Telling::isDue;
        if (isSoldOut)
            record.id = world.database.offers().recordSoldOut(record, isDue);
        else
            match.id = world.database.offers().recordMatch(match, isDue);
        world.database.seen().upsertSeen(1, offer().key, {seenSince, {}});
        // The process dies before the desktop has answered.
        world.center.answers = false;
        Notifier dead(world.database, world.center, world.clock);
        isSoldOut ? dead.notifySoldOut(record) : dead.notifyNewFare(match);
        settle();
        QVERIFY(world.database.offers().untold() ==
                QList<Hit>{isSoldOut ? Hit(record) : Hit(match)});

        world.center.answers = true;
        world.center.posted.clear();
        world.clock.advance(age);
        Notifier next(world.database, world.center, world.clock);
        next.tellRest();
        settle();
        QCOMPARE(world.center.posted.size(), isTold ? 1 : 0);
        QVERIFY(world.database.offers().untold().isEmpty());
        next.tellRest();
        settle();
        QCOMPARE(world.center.posted.size(), isTold ? 1 : 0);
    }

    void whoeverWaitsKnowsItIsMarked() {
        World world;
        world.database.watchers().addSearch(Search());
        Match match = offer();
        match.searchId = 1;
        match.id = world.database.offers().recordMatch(match, OfferStore::Telling::isDue);
        world.notifier.notifyNewFare(match);
        awaited(world.notifier.settled());
        QVERIFY(world.database.offers().untold().isEmpty());
        awaited(world.notifier.settled());
        // A desktop that says nothing holds nobody up for long.
        world.center.answers = false;
        match.cabin = Cabin::first;
        world.notifier.notifyNewFare(match);
        bool isOver = false;
        world.notifier.settled().then([&isOver] { isOver = true; });
        world.clock.advance(99ms);
        QVERIFY(!isOver);
        world.clock.advance(1ms);
        QVERIFY(isOver);
    }

    void whatTheDesktopDoesNotTakeStaysUntold() {
        World world;
        world.database.watchers().addSearch(Search());
        Match match = offer();
        match.searchId = 1;
        match.foundAt = world.clock.now();
        match.id = world.database.offers().recordMatch(match, OfferStore::Telling::isDue);
        world.database.seen().upsertSeen(1, match.key, {{match.cabin}, {}});
        world.center.isThere = false;
        world.notifier.notifyNewFare(match);
        settle();
        QCOMPARE(world.database.offers().untold().size(), 1);
        // It is told when there is a desktop, once, and marked when the disk lets it.
        world.center.isThere = true;
        world.center.posted.clear();
        world.notifier.tellRest();
        world.notifier.tellRest();
        QCOMPARE(world.center.posted.size(), 1);
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE DELETE ON untold BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        settle();
        QCOMPARE(world.database.offers().untold().size(), 1);
        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        world.notifier.tellRest();
        QCOMPARE(world.center.posted.size(), 1);
        match.cabin = Cabin::first;
        match.id = world.database.offers().recordMatch(match, OfferStore::Telling::isDue);
        world.notifier.notifyNewFare(match);
        settle();
        QVERIFY(world.database.offers().untold().isEmpty());

        // What the user has switched off is not owed to them.
        world.database.settings().set(Setting::nativeNotify, false);
        match.id = world.database.offers().recordMatch(match, OfferStore::Telling::isDue);
        Notifier(world.database, world.center, world.clock).notifyNewFare(match);
        settle();
        QVERIFY(world.database.offers().untold().isEmpty());
    }
};

TINDRA_TEST(TestNotifier)
#include "test_notifier.moc"
