// SPDX-License-Identifier: MIT
#include "core/Database.h"
#include "core/TDLog.h"
#include "tests/support/ManualClock.h"
#include "tests/support/RawSql.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Search watcher(const QString& origin, const QString& destination) {
    Search search;
    search.origin = origin;
    search.destination = destination;
    return search;
}

FareKey fareKey(const QString& flights, QDate date = {2027, 3, 1}) {
    return {date, {u"OSL"_s, u"BKK"_s}, flights};
}

Match offer(qint64 searchId, const QString& flights, QDate travelDate = {2027, 3, 1}) {
    Match match;
    match.searchId = searchId;
    match.key = fareKey(flights, travelDate);
    match.fromCity = u"Oslo"_s;
    match.toCity = u"Bangkok"_s;
    match.depart = {travelDate, {9, 5}};
    match.arrive = {travelDate.addDays(1), {6, 10}};
    match.stops = Stops{1, {u"CPH"_s}};
    match.durationMinutes = 785;
    match.cabin = Cabin::business;
    match.seats = 2;
    match.points = 75000;
    match.bookingURL = u"https://example.invalid/?a=1&b=ø"_s;
    match.foundAt = instantFromSeconds(1768478400.25);
    match.isCommunity = searchId == Match::communitySearchId;
    return match;
}

/// The flights of each.
QStringList keys(const QList<Hit>& hits) {
    QStringList keys;
    for (const Hit& hit : hits)
        keys.append(Hits::key(hit).flights);
    return keys;
}

} // namespace

class TestDatabase : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    ManualClock m_clock;
    QString folder() const { return m_dir->path() + u"/Tindra"_s; }
    QByteArray log() const {
        QFile file(m_dir->path() + u"/ui.log"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private Q_SLOTS:
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        TDLog::start(m_dir->path() + u"/ui.log"_s, &m_clock);
    }
    void cleanup() { TDLog::start({}, nullptr); }

    void watchersLiveThroughTheirEdits() {
        Search stored = watcher(u"OSL, bgo"_s, u"JFK"_s);
        stored.name = u"  Høst  "_s;
        stored.cabins = {Cabin::business, Cabin::economy};
        stored.minSeats = 2;
        stored.maxStops = 0;
        stored.dateFrom = QDate(2027, 3, 1);
        stored.returnDateTo = QDate(2027, 4, 1);
        stored.includePartners = true;
        stored.enabled = false;
        {
            Database database(folder(), m_clock);
            QCOMPARE(database.problem().value_or(QString()), QString());
            database.watchers().addSearch(stored);
            QVERIFY(log().contains("addSearch OK: OSL, bgo->JFK id=1\n"));
        }
        Database database(folder(), m_clock);
        stored.id = 1;
        stored.enabled = true;
        QCOMPARE(database.watchers().listSearches(), QList{stored});

        database.safekeeping().set(Kept::lookupCursor(1), u"60"_s);
        database.watchers().updateSearch(stored);
        stored.name = u"Høst"_s;
        QCOMPARE(database.watchers().listSearches(), QList{stored});
        QVERIFY(!database.safekeeping().get(Kept::lookupCursor(1)));

        database.watchers().renameSearch(1, u"\tVår "_s);
        database.watchers().markChecked(1, 4);
        database.watchers().toggleSearch(1);
        stored.name = u"Vår"_s;
        stored.lastChecked = m_clock.now();
        stored.lastFound = 4;
        stored.enabled = false;
        QCOMPARE(database.watchers().listSearches(), QList{stored});
        database.watchers().toggleSearch(1);
        QVERIFY(database.watchers().listSearches().first().enabled);
    }

    void offersComeBackAsTheyWereStored() {
        Database database(folder(), m_clock);
        database.watchers().addSearch(watcher(u"OSL"_s, u"BKK"_s));
        Match stored = offer(1, u"SK1467,TG951"_s, {2027, 12, 31});
        database.offers().recordMatch(stored);
        database.offers().recordMatch(offer(Match::communitySearchId, u"b"_s));
        database.offers().recordMatch(offer(1, u"yesterday"_s, {2027, 1, 14}));
        database.offers().recordMatch(offer(1, u"today"_s, {2027, 1, 15}));
        SoldOut gone{0, 1, fareKey(u"gone"_s), {Cabin::business, Cabin::first}, u"merke"_s, {}};
        database.offers().recordSoldOut(gone);

        const auto recent = database.offers().recentMatches(2000);
        QCOMPARE(keys(recent), QStringList({u"gone"_s, u"today"_s, u"b"_s, u"SK1467,TG951"_s}));
        stored.id = 1;
        QVERIFY(recent.last() == Hit(stored));
        QVERIFY(std::get<Match>(recent[2]).isCommunity);
        gone.id = 5;
        QVERIFY(recent.first() == Hit(gone));
        QCOMPARE(keys(database.offers().recentMatches(1)), QStringList{u"gone"_s});
        QCOMPARE(database.offers().activeMatchCounts(), (QMap<qint64, int>{{-1, 1}, {1, 2}}));

        const FareKey a = fareKey(u"a"_s);
        database.seen().upsertSeen(1, a, {{Cabin::first, Cabin::business}, u"merke"_s});
        database.seen().upsertSeen(1, a, {{Cabin::first}, u"merke"_s});
        // What is taken can be put back exactly, past dates too, except for a deleted watcher's.
        database.watchers().addSearch(watcher(u"OSL"_s, u"NRT"_s));
        database.offers().recordMatch(offer(2, u"orphan"_s));
        QVERIFY(database.offers().takeMatches());
        QVERIFY(database.offers().recentMatches(10).isEmpty());
        database.offers().recordMatch(offer(1, u"meanwhile"_s));
        database.watchers().deleteSearch(2);
        QVERIFY(database.offers().restoreMatches());
        QVERIFY(!database.offers().restoreMatches());
        QVERIFY(database.offers().recentMatches(10).mid(1) == recent);
        QCOMPARE(keys(database.offers().recentMatches(1)), QStringList{u"meanwhile"_s});
        m_clock.advance(-24h);
        QVERIFY(keys(database.offers().recentMatches(10)).contains(u"yesterday"_s));
        m_clock.advance(24h);
        QVERIFY(database.offers().takeMatches());
        QVERIFY(!database.offers().takeMatches());
        QVERIFY(database.seen().seenCabins(1) ==
                (QMap<FareKey, SeenStore::Seen>{{a, {{Cabin::first}, u"merke"_s}}}));
        database.offers().recordMatch(offer(1, u"a"_s));
        database.watchers().deleteSearch(1);
        QVERIFY(database.offers().recentMatches(10).isEmpty());
        QVERIFY(database.seen().seenCabins(1).isEmpty());
    }

    void aTakenWatcherComesBackWhole() {
        Database database(folder(), m_clock);
        QVERIFY(!database.watchers().restoreSearch());
        for (const QString& destination : {u"BKK"_s, u"NRT"_s})
            database.watchers().addSearch(watcher(u"OSL"_s, destination));
        for (const qint64 id : {1, 2}) {
            database.watchers().markChecked(id, 3);
            database.seen().upsertSeen(id, fareKey(u"a"_s), {{Cabin::business}, u"merke"_s});
            database.offers().recordMatch(offer(id, u"a"_s));
            database.offers().recordMatch(offer(id, u"past"_s, {2027, 1, 1}));
        }
        database.watchers().toggleSearch(1);
        const auto watchers = database.watchers().listSearches();
        const auto offers = database.offers().recentMatches(10);

        QVERIFY(database.watchers().takeSearch(1));
        QCOMPARE(database.watchers().listSearches(), watchers.mid(1));
        QVERIFY(database.offers().recentMatches(10) == offers.first(1));
        QVERIFY(database.seen().seenCabins(1).isEmpty());
        QCOMPARE(database.seen().seenCabins(2).size(), 1);
        // What was stored meanwhile has its own ids.
        database.watchers().addSearch(watcher(u"BGO"_s, u"SIN"_s));
        QCOMPARE(database.watchers().listSearches().last().id, 3);

        QVERIFY(database.watchers().restoreSearch());
        QCOMPARE(database.watchers().listSearches().first(2), watchers);
        QVERIFY(database.offers().recentMatches(10) == offers);
        QVERIFY(database.seen().seenCabins(1) == database.seen().seenCabins(2));
        QVERIFY(!database.watchers().restoreSearch()); // once

        // Only the last one can come back, and a file that refuses loses nothing.
        QVERIFY(database.watchers().takeSearch(3));
        QVERIFY(database.watchers().takeSearch(2));
        QVERIFY(!database.watchers().takeSearch(9));
        runOn(folder(), "CREATE TRIGGER refuse BEFORE INSERT ON matches BEGIN "
                        "SELECT RAISE(ABORT, 'no room'); END;");
        QVERIFY(!database.watchers().restoreSearch());
        QCOMPARE(database.watchers().listSearches(), watchers.first(1));
        runOn(folder(), "DROP TRIGGER refuse;");
        QVERIFY(database.watchers().restoreSearch());
        QCOMPARE(database.watchers().listSearches(), watchers);
    }

    void changesAreToldOnceATurn() {
        Database database(folder(), m_clock);
        int watcherNews = 0;
        int offerNews = 0;
        connect(&database.watchers(), &WatcherStore::changed, this, [&] { ++watcherNews; });
        connect(&database.offers(), &OfferStore::changed, this, [&] { ++offerNews; });
        const auto told = [&] {
            settle();
            return std::pair(std::exchange(watcherNews, 0), std::exchange(offerNews, 0));
        };
        database.watchers().addSearch(watcher(u"OSL"_s, u"BKK"_s));
        database.watchers().markChecked(1, 1);
        database.transaction([&] { database.offers().recordMatch(offer(1, u"a"_s)); });
        database.offers().recordMatch(offer(1, u"b"_s));
        QCOMPARE(told(), std::pair(1, 1));
        database.watchers().renameSearch(9, u"nobody"_s);
        database.seen().upsertSeen(1, fareKey(u"a"_s), {{Cabin::business}, {}});
        database.safekeeping().note(Kept::toldBackground);
        QCOMPARE(told(), std::pair(0, 0));
        database.watchers().takeSearch(1);
        QCOMPARE(told(), std::pair(1, 1));
        database.watchers().restoreSearch();
        QCOMPARE(told(), std::pair(1, 1));
        database.offers().takeMatches();
        QCOMPARE(told(), std::pair(0, 1));

        // Those of another process are noticed when somebody asks.
        Database(folder(), m_clock, Database::Access::guest).watchers().toggleSearch(1);
        database.recover();
        QCOMPARE(told(), std::pair(1, 1));
        database.recover();
        QCOMPARE(told(), std::pair(0, 0));
    }

    void settings_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("written");
        const auto add = [](const QString& key, const QString& stored, const QString& value,
                            const QString& written) {
            QTest::addRow("%s %s", qPrintable(key),
                          stored.isNull() ? "missing" : qPrintable(stored))
                << key << stored << value << written;
        };
        const QString missing;
        for (const QString& key : {u"onboarded"_s, u"auto_login"_s})
            add(key, missing, u"off"_s, u"0"_s);
        for (const QString& key : {u"native_notify"_s, u"notify_soldout"_s, u"share_hits"_s})
            add(key, missing, u"on"_s, u"1"_s);
        for (const QString& nonsense : {u""_s, u"true"_s, u" 1"_s})
            add(u"share_hits"_s, nonsense, u"off"_s, u"0"_s);
        const QString interval = u"poll_interval_min"_s;
        for (const QString& usual : {missing, u"abc"_s, u"nan"_s, u"inf"_s, u""_s})
            add(interval, usual, u"10"_s, u"10.0"_s);
        add(interval, u"2.5"_s, u"2.5"_s, u"2.5"_s);
        add(interval, u"-3"_s, u"1"_s, u"1.0"_s);
        add(interval, u"1e300"_s, u"10080"_s, u"10080.0"_s);
        add(u"community_url"_s, missing, missing, u""_s);
        add(u"community_url"_s, u" x "_s, u" x "_s, u" x "_s);
    }
    /// What is read, and then stored again.
    void settings() {
        QFETCH(QString, key);
        QFETCH(QString, stored);
        Database database(folder(), m_clock);
        Settings& settings = database.settings();
        if (!stored.isNull())
            runOn(folder(),
                  "INSERT INTO kv VALUES ('" + key.toUtf8() + "','" + stored.toUtf8() + "')");
        QString value = settings.text(Setting::communityUrl).value_or(QString());
        std::function<bool()> store = [&] { return settings.set(Setting::communityUrl, value); };
        if (key == Setting::pollIntervalMin.key) {
            const double minutes = settings.number(Setting::pollIntervalMin);
            value = QString::number(minutes);
            store = [&, minutes] { return settings.set(Setting::pollIntervalMin, minutes); };
        }
        for (const auto& one : {Setting::onboarded, Setting::nativeNotify, Setting::notifySoldOut,
                                Setting::shareHits, Setting::autoLogin}) {
            if (one.key != key)
                continue;
            value = settings.isOn(one) ? u"on"_s : u"off"_s;
            store = [&, one] { return settings.set(one, value == u"on"_s); };
        }
        QTEST(value, "value");
        QSignalSpy changed(&settings, &Settings::changed);
        QVERIFY(store());
        QCOMPARE(changed.takeFirst(), QVariantList{key});
        QString written;
        SqliteConnection file;
        file.openReadOnly(folder() + u"/tindra.sqlite"_s);
        file.query(
            "SELECT value FROM kv WHERE key = ?",
            [&written](const SqliteRow& row) { written = row.text(0); }, key);
        QTEST(written, "written");
        runOn(folder(), "CREATE TRIGGER refuse BEFORE INSERT ON kv BEGIN "
                        "SELECT RAISE(ABORT, 'no room'); END;");
        QVERIFY(!store() && changed.isEmpty());
    }

    void anOldFileIsUpgradedAndCleanedOnce() {
        QDir().mkpath(folder());
        {
            const Database newest(folder(), m_clock);
        }
        runOn(folder(), "DELETE FROM kv;"
                        "ALTER TABLE matches DROP COLUMN duration_min;"
                        "ALTER TABLE searches DROP COLUMN include_partners;"
                        "INSERT INTO searches (origin, destination) VALUES ('OSL', 'CPH'),"
                        "('BGO', 'CPH');");
        const auto insert = [](const char* searchId, const char* key, const char* route,
                               const char* from, const char* to, const char* soldOut,
                               const char* cabin = "business") {
            return QByteArray("INSERT INTO matches (search_id,key,route,from_city,to_city,cabin,"
                              "soldout,found_at) VALUES (") +
                   searchId + ",'" + key + "','" + route + "','" + from + "','" + to + "','" +
                   cabin + "'," + soldOut + ",0);";
        };
        runOn(folder(), insert("1", "right", "OSL-CPH", "Oslo", "Copenhagen", "0") +
                            insert("1", "wrong", "OSL-CPH", "Oslo", "Bangkok", "0") +
                            insert("1", "wrong, sold out", "OSL-CPH", "Oslo", "Bangkok", "1") +
                            insert("1", "half a route", "OSL-", "Bangkok", "", "0") +
                            insert("1", "twin", "OSL-CPH", "Oslo", "", "0") +
                            insert("1", "twin", "OSL-CPH", "Oslo", "", "0") +
                            insert("1", "twin", "OSL-CPH", "Oslo", "", "1") +
                            insert("1", "twin", "OSL-CPH", "Oslo", "", "0", "economy") +
                            insert("2", "twin", "OSL-CPH", "Oslo", "", "0") +
                            insert("9", "orphan", "OSL-CPH", "", "", "0") +
                            insert("-1", "shared", "OSL-CPH", "", "", "0") +
                            "INSERT INTO seen VALUES (1,'wrong','business','');"
                            "INSERT INTO seen VALUES (2,'wrong','business','');"
                            "INSERT INTO seen VALUES (1,'right','business','');");
        {
            Database database(folder(), m_clock);
            QCOMPARE(database.problem().value_or(QString()), QString());
            QCOMPARE(keys(database.offers().recentMatches(100)),
                     QStringList({u"shared"_s, u"twin"_s, u"twin"_s, u"twin"_s, u"twin"_s,
                                  u"half a route"_s, u"wrong, sold out"_s, u"right"_s}));
            QCOMPARE(database.offers().activeMatchCounts(),
                     (QMap<qint64, int>{{-1, 1}, {1, 4}, {2, 1}}));
            QVERIFY(database.seen().seenCabins(1).keys() == QList{FareKey::fromText(u"right"_s)});
            QVERIFY(database.seen().seenCabins(2).isEmpty());
            QCOMPARE(std::get<Match>(database.offers().recentMatches(100).first()).durationMinutes,
                     0);
            QVERIFY(!database.watchers().listSearches().first().includePartners);
        }
        runOn(folder(), insert("1", "twin", "OSL-CPH", "Oslo", "", "0") +
                            insert("1", "wrong again", "OSL-CPH", "Bangkok", "", "0"));
        Database database(folder(), m_clock);
        QCOMPARE(database.offers().recentMatches(100).size(), 10);
    }

    void onlyItsOwnerCanReadIt() {
        const Database database(folder(), m_clock);
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QVERIFY(!(QFile::permissions(folder()) & others));
        const auto files = QDir(folder()).entryInfoList(QDir::Files);
        QCOMPARE_GE(files.size(), 2); // the database and its write-ahead log
        for (const QFileInfo& file : files)
            QVERIFY2(!(file.permissions() & others), qPrintable(file.fileName()));
    }

    void aTransactionIsStoredWholeOrNotAtAll() {
        Database database(folder(), m_clock);
        QVERIFY(database.transaction([&] {
            database.offers().recordMatch(offer(1, u"a"_s));
            database.seen().upsertSeen(1, fareKey(u"a"_s), {{Cabin::business}, {}});
        }));
        runOn(folder(), "CREATE TRIGGER refuse BEFORE INSERT ON seen BEGIN "
                        "SELECT RAISE(ABORT, 'no room'); END;");
        QVERIFY(!database.transaction([&] {
            database.offers().recordMatch(offer(1, u"b"_s));
            database.seen().upsertSeen(1, fareKey(u"b"_s), {{Cabin::business}, {}});
        }));
        QCOMPARE(keys(database.offers().recentMatches(10)), QStringList{u"a"_s});
        QVERIFY(log().contains("no room"));
        // A failure that goes on is logged once, one after a success again.
        QVERIFY(!database.transaction([&] { database.seen().upsertSeen(1, fareKey(u"d"_s), {}); }));
        QCOMPARE(log().count("no room"), 1);
        QVERIFY(database.problem());
        runOn(folder(), "DROP TRIGGER refuse;");
        QVERIFY(database.transaction([&] { database.offers().recordMatch(offer(1, u"c"_s)); }));
        QCOMPARE(keys(database.offers().recentMatches(10)), QStringList({u"c"_s, u"a"_s}));
        QVERIFY(!database.problem());
    }

    void aChangeThatFailsAddsNothing() {
        Database database(folder(), m_clock);
        database.watchers().addSearch(watcher(u"OSL"_s, u"BKK"_s));
        runOn(folder(), "DROP TABLE searches; DROP TABLE matches;");
        QCOMPARE(database.offers().recordMatch(offer(1, u"a"_s)), 0);
        database.watchers().addSearch(watcher(u"BGO"_s, u"BKK"_s));
        QVERIFY(log().contains("addSearch FEILET: no such table: searches (BGO->BKK)\n"));
        QCOMPARE(log().count("lagring feilet"), 1);
        QVERIFY(!database.offers().takeMatches() && !database.offers().restoreMatches());
    }

    void aFileThatCannotBeUsed_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("folder") << u"folder"_s;
        QTest::newRow("unwritable") << u"unwritable"_s;
        QTest::newRow("no data folder") << u"no data folder"_s;
    }
    void aFileThatCannotBeUsed() {
        QFETCH(QString, kind);
        const bool needsOther = kind == u"unwritable" && ::geteuid() == 0;
        if (kind == u"folder") {
            QDir().mkpath(folder() + u"/tindra.sqlite"_s);
        } else if (kind == u"unwritable") {
            QDir().mkpath(folder());
            QVERIFY(QFile::setPermissions(m_dir->path(), QFile::Permissions(0x7777)));
            QVERIFY(QFile::setPermissions(folder(), QFile::Permissions(0x5555)));
        } else {
            QFile file(folder());
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        // Root may write anywhere, so nobody tries instead.
        if (needsOther)
            QCOMPARE(::seteuid(65534), 0);
        Database database(folder(), m_clock);
        if (needsOther)
            QCOMPARE(::seteuid(0), 0);
        QVERIFY(database.problem());
        QVERIFY(database.problem()->contains(u"tindra.sqlite"_s));
        QCOMPARE(log().count("database: "), 1);

        database.watchers().addSearch(watcher(u"OSL"_s, u"BKK"_s));
        QVERIFY(!database.settings().set(Setting::onboarded, true));
        QVERIFY(!database.transaction([&] { database.offers().recordMatch(offer(1, u"a"_s)); }));
        QVERIFY(database.watchers().listSearches().isEmpty());
        QVERIFY(database.offers().recentMatches(10).isEmpty());
        QVERIFY(!database.settings().isOn(Setting::onboarded));
        QVERIFY(log().contains("addSearch FEILET: "));
        QVERIFY(log().contains("(OSL->BKK)\n"));
        QCOMPARE(log().count("database: "), 1);
    }
};

TINDRA_TEST(TestDatabase)
#include "test_database.moc"
