// SPDX-License-Identifier: MIT
#include "airline/SAS.h"
#include "core/DateFmt.h"
#include "core/TDLog.h"
#include "polling/Notifier.h"
#include "polling/Worker.h"
#include "tests/support/FakeLegFetcher.h"
#include "tests/support/FakeNotificationCenter.h"
#include "tests/support/ManualClock.h"
#include "tests/support/RawSql.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An ordinary response with one direct flight and as many business seats as given.
QByteArray offers(const QString& origin, const QString& destination, const QString& date,
                  int seats) {
    return uR"({"outboundFlights":{"a":{"startTimeInLocal":"%1T09:05:00","stops":0,
        "origin":{"code":"%2"},"destination":{"code":"%3"},
        "segments":[{"marketingCarrier":{"code":"SK"},"flightNumber":1}],
        "cabins":{"BUSINESS":{"f":{"products":{"p":{"productName":"BONUS",
            "price":{"points":50000},"fares":[{"avlSeats":%4}]}}}}}}}})"_s
        .arg(QDate::fromString(date, u"yyyyMMdd").toString(Qt::ISODate), origin, destination,
             QString::number(seats))
        .toUtf8();
}

PollSummary emptyAt(Instant instant) {
    PollSummary summary;
    summary.at = instant;
    return summary;
}

} // namespace

class TestWorker : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        Database database{dir.path(), clock};
        FakeNotificationCenter center;
        Notifier notifier{database, center, clock};
        FakeLegFetcher airline;
        Worker worker{database, airline, notifier, clock};
        QList<Match> found;
        int rounds = 0;

        World() {
            connect(&worker, &Worker::matchFound, &worker,
                    [this](const Match& match) { found.append(match); });
            connect(&worker, &Worker::roundEnded, &worker, [this] { ++rounds; });
        }
        ~World() { settle(); }

        void add(const QString& destination = u"CPH"_s, QDate from = {2027, 3, 1},
                 QDate to = {2027, 3, 2}) {
            Search search;
            search.origin = u"OSL"_s;
            search.destination = destination;
            search.dateFrom = from;
            search.dateTo = to;
            database.watchers().addSearch(search);
        }
        /// The airline has this many seats on every leg.
        void hasSeats(int seats) {
            airline.answer = [seats](const QString& origin, const QString& destination,
                                     const QString& date) {
                return std::optional(offers(origin, destination, date, seats));
            };
        }
        PollSummary round() {
            found.clear();
            airline.looked.clear();
            return *awaited(worker.pollOnce());
        }
        /// The days that were looked at in this round, of March.
        QList<int> days() const {
            QList<int> result;
            for (const Leg& leg : airline.looked)
                result.append(static_cast<int>(QDate(2027, 2, 28).daysTo(leg.date)));
            return result;
        }
    };

    static Outcome outcomeOf(const Leg& leg, int seats) {
        OfferParser parser{Site{}};
        const QByteArray body =
            offers(leg.route.origin, leg.route.destination, DateFmt::compact(leg.date), seats);
        return {Outcome::Kind::answer, 200, {}, *parser.parseOffers(body, leg.route)};
    }

private Q_SLOTS:
    void fromNewToKnownToSoldOutAndBack() {
        World world;
        world.add();
        world.hasSeats(2);
        QStringList statuses;
        connect(&world.worker, &Worker::changed, &world.worker,
                [&] { statuses.append(world.worker.statusText()); });
        const PollSummary first = world.round();
        QCOMPARE(first, (PollSummary{world.clock.now(), 1, 2, 2, 2, 0, {}, {}}));
        QCOMPARE(Worker::loadSummary(world.database.safekeeping()), first);
        QCOMPARE(world.center.posted.size(), 2);
        QCOMPARE(world.found.size(), 2);
        QCOMPARE(world.database.offers().recentMatches(10).size(), 2);
        QCOMPARE(std::get<Match>(world.database.offers().recentMatches(10).last()).id,
                 world.found.first().id);
        QCOMPARE(world.database.watchers().listSearches().first().lastFound, 2);
        QVERIFY(statuses.contains(u"Sjekker OSL → CPH…"_s));
        QVERIFY(statuses.contains(u"Sjekker OSL → CPH — OSL→CPH"_s));
        QCOMPARE(statuses.last(), u""_s);
        QCOMPARE(world.worker.lookupDone(), 2);
        QCOMPARE(world.worker.progress(), (Worker::Progress{1, 1}));
        QVERIFY(!world.worker.isRunning());

        const PollSummary second = world.round();
        QCOMPARE(second.matches, 2);
        QCOMPARE(second.newAlerts, 0);
        QCOMPARE(world.center.posted.size(), 2);
        QVERIFY(world.found.isEmpty());

        world.hasSeats(0);
        QList<SoldOut> gone;
        connect(&world.worker, &Worker::soldOut, &world.worker,
                [&](const SoldOut& record) { gone.append(record); });
        const PollSummary third = world.round();
        QCOMPARE(third.soldOut, 2);
        QCOMPARE(world.database.watchers().listSearches().first().lastFound, 0);
        QCOMPARE(gone.first().key.text(), u"2027-03-01-OSL-CPH-SK1"_s);
        QVERIFY(gone.first().cabins == CabinSet{Cabin::business});
        QCOMPARE(world.center.posted.last().title, u"🔴 Utsolgt"_s);
        QVERIFY(Hits::isSoldOut(world.database.offers().recentMatches(10).first()));
        QCOMPARE(world.round().soldOut, 0);

        world.hasSeats(1);
        QCOMPARE(world.round().newAlerts, 2);
    }

    void rotationOver61Legs() {
        World world;
        world.add(u"CPH"_s, {2027, 3, 1}, {2027, 4, 30});
        world.hasSeats(0);
        QCOMPARE(world.round().fetched, 60);
        QCOMPARE(world.worker.rotationTotal(), 61);
        QCOMPARE(world.worker.lookupTotal(), 60);
        QCOMPARE(world.database.safekeeping().get(Kept::lookupCursor(1)), u"60"_s);
        world.round();
        QCOMPARE(world.days().first(2), QList<int>({61, 1}));
        QCOMPARE(world.days().size(), 60);
        QCOMPARE(world.database.safekeeping().get(Kept::lookupCursor(1)), u"59"_s);
        for (const QString& nonsense : {u"-7"_s, u"x"_s, u"99999999999999999999"_s}) {
            world.database.safekeeping().set(Kept::lookupCursor(1), nonsense);
            world.round();
            QCOMPARE(world.days().first(), 1);
        }
        world.database.safekeeping().set(Kept::lookupCursor(1), u"+62"_s);
        world.round();
        QCOMPARE(world.days().first(), 2);
        // A round that is cut short goes on where it was cut.
        world.database.safekeeping().set(Kept::lookupCursor(1), u"10"_s);
        world.airline.outcome = [&world](const Leg& leg) {
            return world.airline.looked.size() == 6 ? std::nullopt
                                                    : std::optional(outcomeOf(leg, 0));
        };
        world.round();
        QCOMPARE(world.database.safekeeping().get(Kept::lookupCursor(1)), u"15"_s);
        world.airline.outcome = {};
        world.round();
        QCOMPARE(world.days().first(), 16);
    }

    void failuresOfOneWatcherLeaveTheOthers() {
        World world;
        world.add(u"CPH"_s, {});
        world.add(u"LHR"_s);
        world.add(u"ARN"_s);
        world.airline.answer = [](const QString& origin, const QString& destination,
                                  const QString& date) {
            return destination == u"LHR" ? std::nullopt
                                         : std::optional(offers(origin, destination, date, 1));
        };
        const PollSummary summary = world.round();
        QCOMPARE(summary.searches, 3);
        QCOMPARE(summary.newAlerts, 2);
        QCOMPARE(summary.errors,
                 QStringList({u"søk 1: SAS-søk krever avreisedato."_s,
                              u"søk 2: SAS ga ingen data — sjekk EuroBonus-innloggingen "
                              u"(Innstillinger)."_s}));
        QVERIFY(world.database.watchers().listSearches().first().lastChecked);
    }

    void onlyAnAnswerCounts_data() {
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<QString>("text");
        const auto row = [](const Outcome& outcome, const QString& text) {
            QTest::newRow(qPrintable(text)) << outcome << text;
        };
        row({}, u"SAS ga ingen data — sjekk EuroBonus-innloggingen (Innstillinger)."_s);
        row({Outcome::Kind::failed, 500},
            u"SAS svarer med feil (500). Prøver igjen i neste runde."_s);
        row({Outcome::Kind::failed, 200},
            u"SAS svarer med noe Tindra ikke forstår. Prøver igjen i neste runde."_s);
        row({Outcome::Kind::refused, 429}, u"SAS ber oss vente."_s);
    }
    void onlyAnAnswerCounts() {
        QFETCH(const Outcome, outcome);
        QFETCH(const QString, text);
        const bool endsRound = outcome.kind == Outcome::Kind::refused;
        World world;
        world.add();
        world.hasSeats(1);
        world.round();
        // The second of two.
        world.airline.outcome = [&outcome](const Leg& leg) {
            return leg.date.day() == 2 ? outcome : outcomeOf(leg, 1);
        };
        const PollSummary one = world.round();
        const QString reason = outcome.kind == Outcome::Kind::silent
                                   ? u"SAS svarte ikke i tide. Prøver igjen i neste runde."_s
                                   : text;
        const QString gap = u"søk 1: 1 av 2 oppslag fikk ikke svar. "_s + reason;
        QCOMPARE(endsRound ? one.errors : one.notes, QStringList{gap});
        QCOMPARE(endsRound ? one.notes : one.errors, QStringList());
        QCOMPARE(one.soldOut, 0);
        world.airline.outcome = [&outcome](const Leg&) { return outcome; };
        const PollSummary none = world.round();
        QCOMPARE(none.errors, QStringList{u"søk 1: "_s + text});
        QCOMPARE(none.notes, QStringList());
        QCOMPARE(none.soldOut, 0);
        world.airline.outcome = {};
        QCOMPARE(world.round().newAlerts, 0);
    }

    void theOutcomeThatExplainsMostIsNamed() {
        World world;
        world.add();
        for (const int failing : {1, 2}) {
            world.airline.outcome = [failing](const Leg& leg) {
                return leg.date.day() == failing ? Outcome{Outcome::Kind::failed, 500} : Outcome{};
            };
            QVERIFY(world.round().errors.value(0).contains(u"SAS svarer med feil (500)"));
        }
    }

    void whileTheAirlineAsksToBeLeftAlone() {
        World world;
        world.add();
        world.airline.refused = world.clock.now() + 15min;
        QCOMPARE(world.round(), emptyAt(world.clock.now()));
        QVERIFY(world.worker.whyNoRound()->startsWith(u"SAS ber oss vente til "));
        QCOMPARE(world.rounds, 0);

        // The next round comes when it may, not an interval later.
        world.hasSeats(1);
        world.database.settings().set(Setting::pollIntervalMin, 30);
        world.worker.startTimer(10);
        settle();
        world.clock.advance(15min);
        world.airline.refused.reset();
        QCOMPARE(world.rounds, 0);
        world.clock.advance(2s);
        QCOMPARE(world.rounds, 1);
        world.worker.stopTimer();
        settle();
    }

    void whatCutsRoundsShortIsNotInTheWay_data() {
        using Cuts = std::function<bool(const Leg&, int)>;
        QTest::addColumn<Cuts>("cuts");
        QTest::addColumn<Outcome::Kind>("kind");
        QTest::addColumn<int>("seen");
        const Cuts everySecond = [](const Leg&, int look) { return look % 2 == 0; };
        const Cuts aDate = [](const Leg& leg, int) { return leg.date.day() == 3; };
        const Cuts theFirst = [](const Leg& leg, int) {
            return leg.route.destination == u"CPH" && leg.date.day() == 1;
        };
        constexpr auto refused = Outcome::Kind::refused;
        constexpr auto unreachable = Outcome::Kind::unreachable;
        QTest::newRow("every second look is refused") << everySecond << refused << 12;
        QTest::newRow("a date is refused") << aDate << refused << 10;
        QTest::newRow("the first leg is refused") << theFirst << refused << 11;
        QTest::newRow("a date never comes") << aDate << unreachable << 10;
        QTest::newRow("the first leg never comes") << theFirst << unreachable << 11;
    }
    void whatCutsRoundsShortIsNotInTheWay() {
        QFETCH(const std::function<bool(const Leg&, int)>, cuts);
        QFETCH(const Outcome::Kind, kind);
        World world;
        world.add(u"CPH"_s, {2027, 3, 1}, {2027, 3, 6});
        world.add(u"LHR"_s, {2027, 3, 1}, {2027, 3, 6});
        int looks = 0;
        QSet<Leg> answered;
        world.airline.outcome = [&](const Leg& leg) {
            if (cuts(leg, ++looks))
                return Outcome{kind};
            answered.insert(leg);
            return outcomeOf(leg, 1);
        };
        for (int i = 0; i < 24; ++i) {
            // As when a program without a window is started for each round.
            Worker worker(world.database, world.airline, world.notifier, world.clock);
            awaited((kind == Outcome::Kind::refused ? worker : world.worker).pollOnce());
            world.clock.advance(10min);
        }
        QTEST(static_cast<int>(answered.size()), "seen");
        QCOMPARE(world.database.offers().recentMatches(100).size(), answered.size());
    }

    void noLookTwiceAndNoneInVain() {
        World world;
        world.add();
        world.add(u"LHR,CPH"_s, {2027, 3, 2}, {2027, 3, 3});
        Search partners = world.database.watchers().listSearches().first();
        partners.includePartners = true;
        world.database.watchers().addSearch(partners);
        // Today is 15 January.
        world.add(u"ARN"_s, {2027, 1, 10}, {2027, 1, 16});
        world.add(u"HEL"_s, {2026, 12, 1}, {2027, 1, 14});
        world.airline.outcome = [](const Leg& leg) { return outcomeOf(leg, 1); };
        const PollSummary summary = world.round();
        QStringList looked;
        for (const Leg& leg : world.airline.looked)
            looked.append(leg.route.destination + leg.date.toString(u" MMdd"));
        QCOMPARE(looked, QStringList({u"CPH 0301"_s, u"CPH 0302"_s, u"CPH 0303"_s, u"LHR 0302"_s,
                                      u"LHR 0303"_s, u"CPH 0301"_s, u"CPH 0302"_s, u"ARN 0115"_s,
                                      u"ARN 0116"_s}));
        QCOMPARE(world.airline.looked[5].flow, Flow::award);
        QCOMPARE(summary.newAlerts, 2 + 4 + 2 + 2);
        QCOMPARE(summary.searches, 4);
        QCOMPARE(summary.errors, QStringList());
        QVERIFY(!world.database.watchers().listSearches().last().lastChecked);
    }

    void watchersThatChangeInTheMiddle() {
        World world;
        world.add(u"CPH"_s, {2027, 3, 1}, {2027, 3, 4});
        world.airline.outcome = [&world](const Leg& leg) {
            const auto look = world.airline.looked.size();
            if (look == 2) {
                Search edited = world.database.watchers().listSearches().first();
                edited.minSeats = 2;
                edited.dateTo = QDate(2027, 3, 3);
                world.database.watchers().updateSearch(edited);
                world.add(u"LHR"_s);
            }
            return outcomeOf(leg, look == 3 ? 2 : 1);
        };
        const PollSummary summary = world.round();
        // The second look is compared with what is asked for now, and the fourth day is not wanted.
        QCOMPARE(world.days(), QList<int>({1, 2, 3, 1, 2}));
        QStringList found;
        for (const Match& match : std::as_const(world.found))
            found.append(match.key.text());
        QCOMPARE(found, QStringList({u"2027-03-01-OSL-CPH-SK1"_s, u"2027-03-03-OSL-CPH-SK1"_s,
                                     u"2027-03-01-OSL-LHR-SK1"_s, u"2027-03-02-OSL-LHR-SK1"_s}));
        QCOMPARE(summary.searches, 2);
        QCOMPARE(world.worker.progress(), (Worker::Progress{2, 2}));
    }

    void aWindowThatIsMovedInTheMiddle() {
        World world;
        world.add(u"CPH"_s, {2027, 3, 1}, {2027, 3, 4});
        world.airline.outcome = [&world](const Leg& leg) {
            if (world.airline.looked.size() == 2) {
                Search edited = world.database.watchers().listSearches().first();
                edited.dateFrom = QDate(2027, 3, 10);
                edited.dateTo = QDate(2027, 3, 12);
                world.database.watchers().updateSearch(edited);
            }
            return outcomeOf(leg, 1);
        };
        world.round();
        QCOMPARE(world.days(), QList<int>({1, 2, 10, 11, 12}));
        // What was looked at meanwhile is not wanted any more.
        QCOMPARE(world.found.size(), 4);
        QCOMPARE(world.found[1].travelDate(), QDate(2027, 3, 10));
        QCOMPARE(world.worker.lookupDone(), 5);
        QCOMPARE(world.worker.lookupTotal(), 5);
    }

    void aFindIsToldBeforeTheNextPageIsLoaded() {
        World world;
        world.add();
        qsizetype told = 0;
        world.airline.outcome = [&](const Leg& leg) {
            told = world.center.posted.size();
            return outcomeOf(leg, 1);
        };
        world.round();
        QCOMPARE(told, 1);
        QCOMPARE(world.center.posted.size(), 2);
        settle();
        QVERIFY(world.database.offers().untold().isEmpty());
    }

    void aSessionThatDiesEndsTheRound() {
        World world;
        world.add();
        world.add(u"LHR"_s);
        world.airline.answer = [&world](const QString&, const QString&, const QString&) {
            world.airline.status = SASLoginStatus::loggedOut();
            return std::optional<QByteArray>();
        };
        const PollSummary summary = world.round();
        QCOMPARE(summary.searches, 1);
        QCOMPARE(summary.errors, QStringList{u"søk 1: Ikke innlogget hos SAS — søkene får ingen "
                                             u"data. Logg inn via Innstillinger."_s});
        QCOMPARE(world.rounds, 1);
    }

    void aRoundWithoutANetworkSaysSoAndTheNextOneIsFine() {
        World world;
        for (const QString& destination : {u"CPH"_s, u"LHR"_s, u"ARN"_s})
            world.add(destination);
        const QString text =
            u"Får ikke kontakt med SAS. Sjekk nettet – Tindra prøver igjen av seg selv."_s;
        bool isUp = true;
        world.airline.answer = [&](const QString& origin, const QString& destination,
                                   const QString& date) {
            world.airline.unreachable = !isUp;
            return isUp ? std::optional(offers(origin, destination, date, 1)) : std::nullopt;
        };
        // In the middle of the second watcher, whose first date is used all the same.
        connect(&world.worker, &Worker::changed, &world.worker, [&] {
            isUp = isUp && !(world.worker.progress().done == 1 && world.worker.lookupDone() == 2);
        });
        const PollSummary cut = world.round();
        QCOMPARE(cut.errors, QStringList{u"søk 2: 1 av 2 oppslag fikk ikke svar. "_s + text});
        QCOMPARE(cut.searches, 2);
        QCOMPARE(cut.newAlerts, 3);
        world.worker.disconnect(&world.worker);

        for (int i = 0; i < 6; ++i) {
            const PollSummary nothing = world.round();
            QCOMPARE(nothing.errors.size(), 1);
            QVERIFY(nothing.errors[0].endsWith(u": "_s + text));
            QCOMPARE(nothing.soldOut, 0);
        }
        QCOMPARE(world.database.offers().recentMatches(10).size(), 3);

        isUp = true;
        const PollSummary back = world.round();
        QCOMPARE(back.errors, QStringList());
        QCOMPARE(back.newAlerts, 3);
        QCOMPARE(Worker::loadSummary(world.database.safekeeping()), back);

        // A revival that could not reach anybody does not use up the half hour.
        world.airline.status = SASLoginStatus::loggedOut();
        world.airline.verified = SASLoginStatus::loggedOut();
        world.airline.unreachable = true;
        world.round();
        world.airline.unreachable = false;
        world.round();
        world.round();
        QCOMPARE(world.airline.verifications, 2);
    }

    void roundsGoOnWhateverHappensToTheTime_data() {
        using Happens = std::function<void(ManualClock&)>;
        QTest::addColumn<Happens>("happens");
        QTest::addColumn<int>("roundsIn33Minutes");
        const auto set = [](std::chrono::milliseconds forward) {
            return Happens([forward](ManualClock& clock) { clock.setWallClock(forward); });
        };
        QTest::newRow("three hours forward") << set(3h) << 3;
        QTest::newRow("two hours back") << set(-2h) << 3;
        QTest::newRow("over midnight") << set(12h) << 3;
        QTest::newRow("back to another year") << set(-24h * 400) << 3;
        // The round that is due comes at once, and not one for every ten minutes missed.
        QTest::newRow("a night of sleep")
            << Happens([](ManualClock& clock) { clock.suspend(9h); }) << 4;
    }
    void roundsGoOnWhateverHappensToTheTime() {
        QFETCH(const std::function<void(ManualClock&)>, happens);
        QFETCH(const int, roundsIn33Minutes);
        World world;
        world.add();
        world.hasSeats(1);
        world.worker.startTimer(10);
        settle();
        QCOMPARE(world.rounds, 1);
        happens(world.clock);
        world.clock.advance(33min);
        QCOMPARE(world.rounds, 1 + roundsIn33Minutes);
        QVERIFY(!world.worker.isRunning());
        QVERIFY(world.database.watchers().listSearches().first().lastChecked <= world.clock.now());
        QCOMPARE(world.database.offers().recentMatches(10).size(), 2);
        world.worker.stopTimer();
        settle();
    }

    void oneRevivalInHalfAnHour() {
        World world;
        world.add();
        world.hasSeats(1);
        QFile log(world.dir.path() + u"/ui.log"_s);
        TDLog::start(log.fileName(), &world.clock);
        world.airline.status = SASLoginStatus::loggedOut();
        world.airline.verified = SASLoginStatus::loggedOut();
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(world.round(), emptyAt(world.clock.now()));
            world.clock.advance(10min - 1ms);
        }
        QCOMPARE(world.airline.verifications, 1);
        QCOMPARE(world.rounds, 0);
        QVERIFY(!Worker::loadSummary(world.database.safekeeping()));
        world.clock.advance(3ms);

        // Two requests while the session is revived make one round.
        world.airline.verified = SASLoginStatus::loggedIn(world.clock.now());
        std::optional<PollSummary> early;
        auto first = world.worker.pollOnce();
        world.worker.pollOnce().then([&early](PollSummary summary) { early = summary; });
        QCOMPARE(awaited(std::move(first))->newAlerts, 2);
        QCOMPARE(early, emptyAt(world.clock.now()));
        QCOMPARE(world.airline.verifications, 2);
        QCOMPARE(world.rounds, 1);
        TDLog::start({}, nullptr);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QCOMPARE(log.readAll().count("worker: utlogget — proever samlet re-innlogging (neste "
                                     "forsoek om 30 min)\n"),
                 2);

        world.airline.status = SASLoginStatus::loggedOut();
        world.worker.forgetRevivalAttempt();
        world.round();
        QCOMPARE(world.airline.verifications, 3);
    }

    void watchersThatGoAwayInTheMiddle_data() {
        QTest::addColumn<bool>("paused");
        QTest::newRow("deleted") << false;
        QTest::newRow("paused") << true;
    }
    void watchersThatGoAwayInTheMiddle() {
        QFETCH(bool, paused);
        World world;
        world.add();
        world.add(u"LHR"_s);
        world.airline.answer = [&](const QString& origin, const QString& destination,
                                   const QString& date) {
            for (const qint64 id : {1, 2})
                paused ? world.database.watchers().toggleSearch(id)
                       : world.database.watchers().deleteSearch(id);
            return std::optional(offers(origin, destination, date, 1));
        };
        const PollSummary summary = world.round();
        QCOMPARE(summary.searches, 1);
        QCOMPARE(summary.fetched, 0);
        QCOMPARE(world.worker.lookupDone(), 1);
        QVERIFY(world.center.posted.isEmpty());
        QVERIFY(world.database.offers().recentMatches(10).isEmpty());
        QCOMPARE(world.rounds, 1);
    }

    void nothingToDoIsNoRound() {
        World world;
        world.add();
        world.database.watchers().toggleSearch(1);
        QCOMPARE(world.round(), emptyAt(world.clock.now()));
        QCOMPARE(world.rounds, 0);
        QVERIFY(!world.worker.isRunning());
        QVERIFY(!Worker::loadSummary(world.database.safekeeping()));
    }

    void theLoopKeepsTheStoredInterval() {
        World world;
        world.add();
        world.hasSeats(0);
        world.worker.startTimer(10);
        settle();
        QCOMPARE(world.rounds, 1);
        world.clock.advance(9min - 1ms);
        QCOMPARE(world.rounds, 1);
        world.database.settings().set(Setting::pollIntervalMin, 0.5);
        world.clock.advance(2min + 1ms);
        QVERIFY(world.rounds == 2 || world.rounds == 3);
        world.database.settings().set(Setting::pollIntervalMin, 10);
        world.clock.advance(66s);
        const int slow = world.rounds;
        world.clock.advance(9min - 66s);
        QCOMPARE(world.rounds, slow);
        world.clock.advance(2min + 66s);
        QCOMPARE(world.rounds, slow + 1);
        world.rounds = 5;
        // A restarted loop replaces the old one.
        world.worker.startTimer(10);
        settle();
        QCOMPARE(world.rounds, 6);
        world.clock.advance(11min);
        QCOMPARE(world.rounds, 7);
        world.worker.stopTimer();
        world.clock.advance(1h);
        QCOMPARE(world.rounds, 7);
        QCOMPARE(Worker::jittered(10min, 0), std::chrono::milliseconds(9min));
        QCOMPARE(Worker::jittered(10min, 1), std::chrono::milliseconds(11min));
        QCOMPARE(Worker::jittered(1min, 0), std::chrono::milliseconds(1min));
    }

    void whatCannotBeStoredIsTriedAgain() {
        World world;
        world.add();
        world.hasSeats(1);
        world.round();
        world.database.watchers().deleteSearch(1);
        world.add(u"LHR"_s);
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE INSERT ON seen BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        const PollSummary refused = world.round();
        QCOMPARE(refused.newAlerts, 2);
        QCOMPARE(world.found.first().id, 0);
        QVERIFY(world.database.offers().recentMatches(10).isEmpty());
        QVERIFY(world.database.seen().seenCabins(2).isEmpty());
        QVERIFY(world.database.problem());
        const auto announced = world.center.posted.size();

        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        QCOMPARE(world.round().newAlerts, 2);
        QCOMPARE(world.database.offers().recentMatches(10).size(), 2);
        QVERIFY(!world.database.problem());
        // Said once, all the same.
        QCOMPARE(world.center.posted.size(), announced);

        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE UPDATE ON seen BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        world.hasSeats(0);
        QCOMPARE(world.round().soldOut, 0);
        QCOMPARE(world.center.posted.size(), announced);
        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        QCOMPARE(world.round().soldOut, 2);
        QCOMPARE(world.center.posted.size(), announced + 2);
    }

    void storageIsMendedWhileSignedOut() {
        World world;
        world.airline.status = SASLoginStatus::loggedOut();
        world.airline.verified = SASLoginStatus::loggedOut();
        world.round();
        runOn(world.dir.path(), "CREATE TRIGGER refuse BEFORE INSERT ON kv BEGIN "
                                "SELECT RAISE(ABORT, 'no room'); END;");
        world.database.safekeeping().note(Kept::toldBackground);
        world.round();
        QVERIFY(world.database.problem());
        runOn(world.dir.path(), "DROP TRIGGER refuse;");
        world.round();
        QVERIFY(!world.database.problem());
    }

    void nothingMoreIsStoredOnceTheWatcherIsGone() {
        World world;
        // More finds than one step takes: two cabins on sixty dates.
        world.add(u"CPH"_s, {2027, 3, 1}, {2027, 4, 29});
        world.add(u"LHR"_s, {2027, 3, 1}, {2027, 4, 29});
        world.hasSeats(1);
        connect(&world.worker, &Worker::matchFound, &world.worker, [&world](const Match& match) {
            if (match.searchId == 1)
                world.database.watchers().deleteSearch(1);
        });
        world.round();
        QVERIFY(world.database.offers().activeMatchCounts().value(1) == 0);
        QVERIFY(world.database.seen().seenCabins(1).isEmpty());
        QCOMPARE(world.database.offers().activeMatchCounts().value(2), 60);
    }

    void aWorkerThatGoesAwayInTheMiddle_data() {
        QTest::addColumn<bool>("afterTheFirstFind");
        QTest::newRow("before an answer") << false;
        QTest::newRow("between storing and the end") << true;
    }
    void aWorkerThatGoesAwayInTheMiddle() {
        QFETCH(bool, afterTheFirstFind);
        auto world = std::make_unique<World>();
        world->add();
        world->hasSeats(1);
        auto worker = std::make_unique<Worker>(world->database, world->airline, world->notifier,
                                               world->clock);
        worker->startTimer(10);
        if (afterTheFirstFind)
            connect(worker.get(), &Worker::matchFound, this, [&worker] {
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(), [&worker] { worker.reset(); },
                    Qt::QueuedConnection);
            });
        else
            worker.reset();
        settle();
        QVERIFY(!worker);
        QCOMPARE(world->database.offers().recentMatches(10).size(), afterTheFirstFind ? 1 : 0);
        QVERIFY(!Worker::loadSummary(world->database.safekeeping()));
    }
};

TINDRA_TEST(TestWorker)
#include "test_worker.moc"
