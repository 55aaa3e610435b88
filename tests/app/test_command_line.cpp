// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"
#include "app/Demo.h"
#include "app/HuntReport.h"
#include "core/Err.h"
#include "polling/Legs.h"

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
        QCOMPARE(CommandLine::parse({u"hunt"_s}),
                 (CommandLine{Command::hunt, false, false, false}));
        QCOMPARE(CommandLine::parse({u"hunt"_s, u"--json"_s, u"--demo"_s, u"--once"_s}),
                 (CommandLine{Command::hunt, true, true, true}));
        QCOMPARE(CommandLine::parse({u"sign-in"_s, u"--demo"_s}),
                 (CommandLine{Command::signIn, false, false, true}));
        QCOMPARE(CommandLine::parse({u"--version"_s}).command, Command::version);
        QCOMPARE(CommandLine::parse({u"hunt"_s, u"--once"_s, u"--help"_s}).command, Command::help);
        for (const QString& option : {u"--once"_s, u"--json"_s, u"--demo"_s, u"--version"_s})
            QVERIFY(CommandLine::helpText().contains(option));
    }

    void nonsenseIsOneLine_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");
        QTest::newRow("nothing") << QStringList{} << u"tindra hunt"_s;
        QTest::newRow("command") << QStringList{u"jakt"_s} << u"«jakt»"_s;
        QTest::newRow("option") << QStringList{u"hunt"_s, u"--onse"_s} << u"«--onse»"_s;
        QTest::newRow("not for it") << QStringList{u"sign-in"_s, u"--once"_s} << u"«--once»"_s;
        QTest::newRow("not alone") << QStringList{u"--version"_s, u"x"_s} << u"«--version»"_s;
        QTest::newRow("with help") << QStringList{u"hunt"_s, u"-x"_s, u"--help"_s} << u"«-x»"_s;
        QTest::newRow("two lines") << QStringList{u"hunt"_s, u"a\nb"_s} << u"«a b»"_s;
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

    void reports() {
        Match match;
        match.id = 5;
        match.key = u"k"_s;
        match.route = u"CPH-BKK"_s;
        match.travelDate = u"2027-03-01"_s;
        match.cabin = u"premeco"_s;
        match.seats = 2;
        match.points = 54000;
        match.flight = u"SK1"_s;
        match.stopsText = u"direkte"_s;
        match.foundAt = instantFromSeconds(1.8e9);
        Match gone;
        gone.route = u"CPH-BKK 2027-03-01 · SK2"_s;
        gone.cabin = u"business,economy"_s;
        gone.soldOut = true;
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
                legs += Legs::ofWatcher(watcher).size();
            QCOMPARE(legs, 24);
        }
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "test_command_line.moc"
