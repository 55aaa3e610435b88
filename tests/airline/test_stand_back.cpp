// SPDX-License-Identifier: MIT
#include "airline/RetryAfter.h"
#include "airline/StandBack.h"
#include "core/Database.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TestProgram.h"

#include <QDateTime>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestStandBack : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        Database database{dir.path(), clock};

        static std::chrono::seconds left(const StandBack& standBack, const Clock& itsClock) {
            const auto until = standBack.until();
            return until ? std::chrono::round<std::chrono::seconds>(*until - itsClock.now()) : 0s;
        }
        std::chrono::seconds left(const StandBack& standBack) const {
            return left(standBack, clock);
        }
    };

private Q_SLOTS:
    void whatTheHeaderSays() {
        const auto seconds = [](const QString& header) {
            const auto found = retryAfter(header, ManualClock().now());
            return found ? int(found->count()) : -1;
        };
        QCOMPARE(seconds(u"120"_s), 120);
        QCOMPARE(seconds(u" 0 "_s), 0);
        QCOMPARE(seconds(u"31536000"_s), 31536000);
        QCOMPARE(seconds(u"99999999999999999999999"_s), 31536000);
        // The clock stands at noon of 15 January 2027.
        QCOMPARE(seconds(u"Fri, 15 Jan 2027 12:20:00 GMT"_s), 1200);
        QCOMPARE(seconds(u"Fri, 15 Jan 2027 11:00:00 GMT"_s), 0);
        QCOMPARE(seconds(u"Mon, 15 Jan 2091 11:00:00 GMT"_s), 31536000);
        for (const QString& nonsense :
             {u""_s, u"-5"_s, u"1e3"_s, u"soon"_s, u"Fri, 99 Jan 2027 12:20:00 GMT"_s, u"２"_s})
            QCOMPARE(seconds(nonsense), -1);
    }

    void theSitesOwnTimeWithinReason() {
        World world;
        StandBack standBack(world.database.safekeeping(), world.clock);
        for (const auto& [header, pause] :
             {std::pair(u"600"_s, 10min), {u"0"_s, 1min}, {u"31536000"_s, 240min}}) {
            standBack.refuse(header, 429);
            QCOMPARE(world.left(standBack), std::chrono::seconds(pause));
        }
        // It says nothing about how long to wait where the site names no time.
        standBack.refuse({}, 429);
        QCOMPARE(world.left(standBack), std::chrono::seconds(15min));
        const QSignalSpy changed(&standBack, &StandBack::changed);
        world.clock.advance(15min - 1s);
        QVERIFY(standBack.isOn());
        world.clock.advance(1s);
        QVERIFY(!standBack.isOn());
        QCOMPARE(changed.count(), 1);
    }

    void aQuarterOfAnHourThatDoubles() {
        World world;
        StandBack standBack(world.database.safekeeping(), world.clock);
        for (const auto pause : {15min, 30min, 60min, 120min, 240min, 240min}) {
            standBack.refuse({}, 503);
            QCOMPARE(world.left(standBack), std::chrono::seconds(pause));
            world.clock.advance(pause);
            QVERIFY(!standBack.isOn());
        }
        standBack.answered();
        standBack.refuse({}, 503);
        QCOMPARE(world.left(standBack), std::chrono::seconds(15min));
        standBack.lift();
        QVERIFY(!standBack.isOn());
        // The user's wish changes nothing about the site.
        standBack.refuse({}, 503);
        QCOMPARE(world.left(standBack), std::chrono::seconds(30min));
    }

    void whatIsTold() {
        World world;
        world.clock.setWallClock(1s);
        StandBack standBack(world.database.safekeeping(), world.clock);
        standBack.refuse(u"60"_s, 429);
        const QString time =
            QDateTime(QDate(2027, 1, 15), QTime(12, 2), Qt::UTC).toLocalTime().toString(u"HH:mm"_s);
        QCOMPARE(StandBack::text(*standBack.until()), u"SAS ber oss vente til "_s + time);
    }

    void itIsKeptOverARestart() {
        World world;
        StandBack(world.database.safekeeping(), world.clock).refuse({}, 429);
        world.clock.advance(5min);
        {
            StandBack again(world.database.safekeeping(), world.clock);
            QCOMPARE(world.left(again), std::chrono::seconds(10min));
            again.refuse({}, 429);
            QCOMPARE(world.left(again), std::chrono::seconds(30min));
            // Setting the clock moves nothing while it runs.
            world.clock.setWallClock(3h);
            QCOMPARE(world.left(again), std::chrono::seconds(30min));
            world.clock.setWallClock(-3h);
        }
        world.clock.setWallClock(-48h);
        QCOMPARE(world.left(StandBack(world.database.safekeeping(), world.clock)),
                 std::chrono::seconds(240min));
        world.clock.setWallClock(49h);
        QVERIFY(!StandBack(world.database.safekeeping(), world.clock).isOn());
        for (const QString& nonsense : {u"nan"_s, u"1e300"_s, u"x"_s}) {
            world.database.safekeeping().set(Kept::refusedUntil, nonsense);
            world.database.safekeeping().set(Kept::refusedPause, nonsense);
            QVERIFY(world.left(StandBack(world.database.safekeeping(), world.clock)) <= 4h);
        }
    }
};

TINDRA_TEST(TestStandBack)
#include "test_stand_back.moc"
