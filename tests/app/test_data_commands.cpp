// SPDX-License-Identifier: MIT
// The commands on the data, on a real database. How they are spelt is tested with the command line.
#include "app/CommandLine.h"
#include "app/ExitCode.h"
#include "app/MatchTable.h"
#include "core/Err.h"
#include "tests/support/AppWorld.h"
#include "tests/support/RawSql.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

class TestDataCommands : public QObject {
    Q_OBJECT

    static CommandAnswer run(AppWorld& world, const QString& line) {
        const auto parsed = CommandLine::parse(line.split(u' '));
        return ::run(parsed.data.value(), {world.database, world.clock, Site{}});
    }
    static QJsonArray json(const CommandAnswer& answer) {
        return QJsonDocument::fromJson(answer.out).array();
    }

private Q_SLOTS:
    void watchersAreAddedPausedAndRemoved() {
        AppWorld world;
        QVERIFY(run(world, u"watchers list"_s).out.startsWith("Ingen overv"));
        const QString add = u"watchers add --from OSL --to %1 --out %2"_s;
        QCOMPARE(run(world, add.arg(u"EWR"_s, u"2027-01-10..2027-01-14"_s)).exitCode,
                 ExitCode::wrongUsage);
        const auto added = run(world, add.arg(u"EWR,XQX"_s, u"2027-01-10..2027-01-15"_s));
        QCOMPARE(added.exitCode, 0);
        QVERIFY(added.out.contains("1 er lagret"));
        QVERIFY(added.err.contains(u"XQX"_s) && !added.err.contains(u"EWR"_s));
        world.addMatch();
        run(world, add.arg(u"LHR"_s, u"2027-03-01"_s));

        QCOMPARE(run(world, u"watchers pause 1"_s).exitCode, 0);
        QCOMPARE(run(world, u"watchers pause 1"_s).exitCode, 0);
        const auto list = json(run(world, u"watchers list --json"_s));
        QCOMPARE(list.size(), 2);
        QCOMPARE(list[0][u"destination"], QJsonValue(QJsonArray{u"EWR"_s, u"XQX"_s}));
        QCOMPARE(list[0][u"enabled"], QJsonValue(false));
        QCOMPARE(list[0][u"hits"], QJsonValue(1));
        QCOMPARE(list[1][u"enabled"], QJsonValue(true));
        QVERIFY(run(world, u"watchers list"_s).out.contains("1  pause  OSL"));

        run(world, u"watchers resume 1"_s);
        QVERIFY(world.database.watchers().listSearches().first().enabled);
        run(world, u"watchers remove 1"_s);
        QCOMPARE(world.database.watchers().listSearches().size(), 1);
        for (const char* gone : {"watchers remove 1", "watchers pause 1", "hits --watcher 1"})
            QCOMPARE(run(world, QString::fromLatin1(gone)).exitCode, ExitCode::wrongUsage);
    }

    void hitsAreFiltered() {
        AppWorld world;
        world.addWatcher();
        world.addWatcher(u"LHR"_s);
        world.addMatch();
        world.addMatch([](Match& match) {
            match.searchId = 2;
            // As a stranger could have sent it.
            match.key = {match.key.date, {u"OSL"_s, u"LHR"_s}, u"SK1\u001b[2J"_s};
        });
        world.addSoldOut({}, [](SoldOut& record) { record.label = u"OSL-EWR gone"_s; });
        QCOMPARE(json(run(world, u"hits --json"_s)).size(), 2);
        QCOMPARE(json(run(world, u"hits --json --all"_s)).size(), 3);
        const auto ofSecond = json(run(world, u"hits --json --watcher 2"_s));
        QCOMPARE(ofSecond.size(), 1);
        QCOMPARE(ofSecond[0][u"route"], QJsonValue(u"OSL-LHR"_s));
        const QByteArray text = run(world, u"hits --all"_s).out;
        QCOMPARE(text.count('\n'), 3);
        QVERIFY(text.contains("Utsolgt: OSL-EWR gone") && !text.contains('\x1b'));
        QCOMPARE(run(world, u"hits --csv"_s).out.count("\r\n"), 3);
    }

    void tablesAreSafeToOpen() {
        Match match;
        match.key = {{}, {u"=HYPERLINK(\"x\")"_s, {}}, u"a\r\nb"_s};
        match.fromCity = u"Tromsø, Norge"_s;
        match.toCity = u"-1"_s;
        match.cabin = Cabin::business;
        match.bookingURL = u"https://evil.example/"_s;
        match.foundAt = instantFromSeconds(1.8e9);
        Match wild = match;
        wild.bookingURL = u"https://www.sas.no/book?a=1,2"_s;
        wild.foundAt = instantFromSeconds(1e300);
        const QByteArray bytes = MatchTable::csv({match, wild}, Site{});
        QVERIFY(bytes.startsWith("\xEF\xBB\xBFReisedato,Rute,"));
        const QString table = QString::fromUtf8(bytes);
        QVERIFY(
            table.contains(u"\r\n,\"'=HYPERLINK(\"\"x\"\")\",\"Tromsø, Norge\",'-1,,,,\"a\r\nb\",0,"
                           u"Business,0,0,nei,nei,2027-01-15 08:00,\r\n"_s));
        QVERIFY(table.endsWith(u"9999-12-31 23:59,\"https://www.sas.no/book?a=1,2\"\r\n"_s));
    }

    void backupsReplaceBackupsOnly() {
        AppWorld world;
        world.addWatcher();
        const QString file = world.dir.path() + u"/backup"_s;
        QCOMPARE(run(world, u"backup "_s + file).exitCode, 0);
        world.addWatcher();
        QCOMPARE(run(world, u"backup "_s + file).exitCode, 0);
        QFile letter(world.dir.path() + u"/letter"_s);
        QVERIFY(letter.open(QIODevice::WriteOnly));
        letter.write("Kjære Kari");
        letter.close();
        for (const QString& taken :
             {letter.fileName(), world.dir.path(), world.dir.path() + u"/tindra.sqlite"_s,
              world.dir.path() + u"/no/x"_s})
            QVERIFY2(run(world, u"backup "_s + taken).exitCode == ExitCode::failed,
                     qPrintable(taken));
        QCOMPARE(letter.size(), 11);

        QTemporaryDir other;
        const auto restored = Restore{file}.run(other.path(), world.clock);
        QVERIFY(restored.out.startsWith("2 overv"));
        QCOMPARE(Database(other.path(), world.clock).watchers().listSearches(),
                 world.database.watchers().listSearches());
    }

    void aRestoreThatFailsPutsTheOldFileBack() {
        const ManualClock clock;
        const QTemporaryDir dir;
        const QString mine = dir.path() + u"/mine"_s;
        const QString other = dir.path() + u"/other"_s;
        Database(mine, clock).settings().set(Setting::onboarded, true);
        // It has the tables, but not what belongs in them.
        QVERIFY(QDir().mkpath(other));
        runOn(other, "CREATE TABLE searches(a); CREATE TABLE seen(a); CREATE TABLE matches(a);"
                     "CREATE TABLE kv(a); PRAGMA user_version = 1;");
        try {
            Restore{other + u"/tindra.sqlite"_s}.run(mine, clock);
            QFAIL("it was restored");
        } catch (const Err& error) {
            QVERIFY2(error.message.endsWith(u"Databasen som var der, er satt tilbake."_s),
                     qPrintable(error.message));
        }
        QCOMPARE(QDir(mine).entryList(QDir::Files), QStringList{u"tindra.sqlite"_s});
        QVERIFY(Database(mine, clock).settings().isOn(Setting::onboarded));
    }

    void aProblemIsSaid() {
        AppWorld world;
        Database guest(world.dir.path() + u"/nothing"_s, world.clock, Database::Access::guest);
        const DataContext context{guest, world.clock, Site{}};
        const auto line =
            CommandLine::parse(u"watchers add --from OSL --to EWR --out 2027-03-01"_s.split(u' '));
        QCOMPARE(::run(*line.data, context).exitCode, ExitCode::failed);
        QVERIFY(::run(*line.data, context).err.contains(u"ikke klar"_s));
        QVERIFY(ListHits{}.run(context).err.contains(u"ikke klar"_s));
    }
};

TINDRA_TEST(TestDataCommands)
#include "test_data_commands.moc"
