// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"
#include "app/Demo.h"
#include "app/HuntReport.h"
#include "core/Err.h"
#include "core/WatcherForm.h"
#include "polling/Legs.h"
#include "tests/support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCommandLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commands() {
        using Command = CommandLine::Command;
        QCOMPARE(CommandLine::parse({}), (CommandLine{.command = Command::window}));
        QCOMPARE(CommandLine::parse({u"--hidden"_s, u"--demo"_s}),
                 (CommandLine{.command = Command::window, .hidden = true, .demo = true}));
        QCOMPARE(CommandLine::parse({u"hunt"_s}), (CommandLine{.command = Command::hunt}));
        QCOMPARE(CommandLine::parse({u"hunt"_s, u"--json"_s, u"--demo"_s, u"--once"_s}),
                 (CommandLine{.command = Command::hunt, .once = true, .json = true, .demo = true}));
        QCOMPARE(CommandLine::parse({u"hunt"_s, u"--picture"_s, u"a b.png"_s}),
                 (CommandLine{.command = Command::hunt, .picture = u"a b.png"_s}));
        QCOMPARE(CommandLine::parse({u"sign-in"_s, u"--demo"_s}),
                 (CommandLine{.command = Command::signIn, .demo = true}));
        QCOMPARE(CommandLine::parse({u"--version"_s}).command, Command::version);
        QCOMPARE(CommandLine::parse({u"hunt"_s, u"--once"_s, u"--help"_s}).command, Command::help);
        QCOMPARE(CommandLine::parse({u"hits"_s, u"--csv"_s, u"--all"_s, u"--watcher=3"_s}),
                 (CommandLine{.command = Command::data,
                              .data = ListHits{ListHits::Format::csv, 3, true}}));
        QCOMPARE(CommandLine::parse({u"watchers"_s, u"resume"_s, u"7"_s, u"--demo"_s}),
                 (CommandLine{.command = Command::data,
                              .demo = true,
                              .data = ChangeWatcher{ChangeWatcher::Change::resume, 7}}));
        QCOMPARE(CommandLine::parse({u"restore"_s, u"--"_s, u"-x"_s}),
                 (CommandLine{.command = Command::restore, .restore = {u"-x"_s}}));
        for (const QString& option :
             {u"--once"_s, u"--json"_s, u"--demo"_s, u"--version"_s, u"--partners"_s, u"--csv"_s})
            QVERIFY(CommandLine::helpText().contains(option));
        for (const int most : {WatcherForm::mostSeats, WatcherForm::mostStops})
            QVERIFY(CommandLine::helpText().contains(u" til %1)"_s.arg(most)));
    }

    void nonsenseIsOneLine_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");
        QTest::newRow("not with a window") << QStringList{u"--once"_s} << u"«--once»"_s;
        QTest::newRow("command") << QStringList{u"jakt"_s} << u"«jakt»"_s;
        QTest::newRow("option") << QStringList{u"hunt"_s, u"--onse"_s} << u"«--onse»"_s;
        QTest::newRow("not for it") << QStringList{u"sign-in"_s, u"--once"_s} << u"«--once»"_s;
        QTest::newRow("no picture") << QStringList{u"hunt"_s, u"--picture"_s} << u"«--picture»"_s;
        QTest::newRow("not alone") << QStringList{u"--version"_s, u"x"_s} << u"«--version»"_s;
        QTest::newRow("with help") << QStringList{u"hunt"_s, u"-x"_s, u"--help"_s} << u"«-x»"_s;
        QTest::newRow("two lines") << QStringList{u"hunt"_s, u"a\nb"_s} << u"«a b»"_s;
        QTest::newRow("two formats")
            << QStringList{u"hits"_s, u"--json"_s, u"--csv"_s} << u"--csv"_s;
        QTest::newRow("no verb") << QStringList{u"watchers"_s} << u"pause"_s;
        QTest::newRow("no file") << QStringList{u"backup"_s} << u"tindra backup"_s;
        QTest::newRow("two files") << QStringList{u"restore"_s, u"a"_s, u"b"_s} << u"restore"_s;
        QTest::newRow("word") << QStringList{u"hunt"_s, u"OSL"_s} << u"«OSL»"_s;
    }
    void nonsenseIsOneLine() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        try {
            CommandLine::parse(arguments);
            QFAIL("accepted");
        } catch (const Err& error) {
            QVERIFY(error.message.contains(named));
            QVERIFY(error.message.contains(u"--help"_s));
            QVERIFY(!error.message.contains(u'\n'));
        }
    }

    void newWatchers() {
        const QStringList least{u"watchers"_s, u"add"_s, u"--from"_s, u"osl"_s,
                                u"--to"_s,     u"LHR"_s, u"--out"_s,  u"2027-03-01"_s};
        Search watcher;
        watcher.origin = u"OSL"_s;
        watcher.destination = u"LHR"_s;
        watcher.dateFrom = watcher.dateTo = QDate(2027, 3, 1);
        QCOMPARE(CommandLine::parse(least).data, DataCommand(AddWatcher{watcher}));

        watcher.origin = u"OSL,BGO"_s;
        watcher.destination = u"EWR,JFK"_s;
        watcher.dateTo = QDate(2027, 3, 31);
        watcher.returnDateFrom = QDate(2027, 4, 1);
        watcher.returnDateTo = QDate(2027, 4, 20);
        watcher.cabins = {Cabin::first, Cabin::premeco};
        watcher.minSeats = 2;
        watcher.maxStops = 3;
        watcher.includePartners = true;
        watcher.name = u"New York"_s;
        const QStringList all =
            u"watchers|add|--from= osl, bgo ,OSL|--to=EWR,jfk|--out|"
            u"2027-03-01..2027-03-31|--back|2027-04-01..2027-04-20|--cabins|"
            u"Premium,first|--seats|2|--stops=3|--partners|--name| New  York "_s.split(u'|');
        QCOMPARE(CommandLine::parse(all).data, DataCommand(AddWatcher{watcher}));
    }

    void newWatchersThatMakeNoSense_data() {
        QTest::addColumn<QString>("changed");
        QTest::addColumn<QString>("named");
        QTest::newRow("code") << u"--to=LH1"_s << u"«LH1»"_s;
        QTest::newRow("letters") << u"--to=ÅØÆ"_s << u"«ÅØÆ»"_s;
        QTest::newRow("no code") << u"--to=,"_s << u"«--to»"_s;
        QTest::newRow("both ends") << u"--to=LHR,OSL"_s << u"OSL"_s;
        QTest::newRow("no such day") << u"--out=2027-02-29"_s << u"2027-02-29"_s;
        QTest::newRow("backwards") << u"--out=2027-03-02..2027-03-01"_s << u"før den begynner"_s;
        QTest::newRow("half a range") << u"--out=2027-03-02.."_s << u"--out"_s;
        QTest::newRow("331 days") << u"--out=2027-03-01..2028-01-25"_s << u"330"_s;
        QTest::newRow("home before out") << u"--back=2027-02-01"_s << u"før utreisen"_s;
        QTest::newRow("cabin") << u"--cabins=business,luxus"_s << u"«luxus»"_s;
        QTest::newRow("seats") << u"--seats=0"_s << u"fra 1 til 9"_s;
        QTest::newRow("stops") << u"--stops=4"_s << u"fra 0 til 3"_s;
        QTest::newRow("no value") << u"--name"_s << u"«--name»"_s;
        QTest::newRow("flag with value") << u"--partners=ja"_s << u"«--partners=ja»"_s;
        QTest::newRow("twice") << u"--to=EWR|--to=JFK"_s << u"to ganger"_s;
        QTest::newRow("from where") << u"--from="_s << u"«--from»"_s;
    }
    void newWatchersThatMakeNoSense() {
        QFETCH(QString, changed);
        QFETCH(QString, named);
        QStringList words{u"--from=OSL"_s, u"--to=LHR"_s, u"--out=2027-03-01"_s};
        words.removeIf([&changed](const QString& word) {
            return changed.startsWith(word.section(u'=', 0, 0));
        });
        words += changed.split(u'|');
        try {
            CommandLine::parse(QStringList{u"watchers"_s, u"add"_s} + words);
            QFAIL("accepted");
        } catch (const Err& error) {
            QVERIFY2(error.message.contains(named), qPrintable(error.message));
        }
    }

    void reports() {
        Match match;
        match.id = 5;
        match.key = FareKey::fromText(u"2027-03-01-CPH-BKK-SK1"_s);
        match.cabin = Cabin::premeco;
        match.seats = 2;
        match.points = 54000;
        match.stops = Stops();
        match.foundAt = instantFromSeconds(1.8e9);
        SoldOut gone;
        gone.label = u"CPH-BKK 2027-03-01 · SK2"_s;
        gone.cabins = {Cabin::business, Cabin::economy};
        PollSummary summary;
        summary.newAlerts = 1;
        summary.errors = QStringList{u"søk 3: SAS-søk krever avreisedato."_s};
        const HuntReport report{summary, {match}, {gone}};

        const auto json = QJsonDocument::fromJson(report.toJson()).object();
        QCOMPARE(json.keys(), QStringList({u"new"_s, u"soldOut"_s, u"summary"_s}));
        QCOMPARE(PollSummary::fromJson(
                     QString::fromUtf8(QJsonDocument(json[u"summary"].toObject()).toJson())),
                 summary);
        const auto found = json[u"new"][0].toObject();
        QCOMPARE(found.size(), 19);
        QCOMPARE(found[u"id"].toInt(), 5);
        QCOMPARE(found[u"foundAt"].toDouble(), 1.8e9);
        QVERIFY(json[u"soldOut"][0][u"soldOut"].toBool());
        QVERIFY(!report.toJson().contains('\n'));

        const QString text = report.toText();
        for (const QString& part :
             {u"01.03.27  CPH-BKK  Premium   2 seter"_s, u"54\u00a0000 poeng"_s, u"SK1  direkte"_s,
              u"CPH-BKK 2027-03-01 · SK2  Business, Økonomi"_s, u"  søk 3: "_s})
            QVERIFY2(text.contains(part), qPrintable(text));
    }

    void theDemosWatchersCanAllBeLookedUp() {
        for (const QDate today : {QDate(2027, 1, 31), QDate(2027, 12, 31), QDate(2028, 2, 29)}) {
            const auto watchers = Demo::watchers(today);
            QCOMPARE(watchers.size(), 3);
            qsizetype legs = 0;
            for (const Search& watcher : watchers)
                legs += Legs::ofWatcher(watcher, today).size();
            QCOMPARE(legs, 24);
        }
    }
};

TINDRA_TEST(TestCommandLine)
#include "test_command_line.moc"
