// SPDX-License-Identifier: MIT
#include "airline/SessionState.h"
#include "app/Diagnosis.h"
#include "app/EngineAge.h"
#include "tests/support/AppWorld.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

class TestDiagnosis : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingPrivateLeaves_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const QString& line, const QString& expected) {
            QTest::newRow(name) << line << expected;
        };
        const QString at = u"2027-01-15T12:00:00Z "_s;
        row("harmless", at + u"SSO-fornyelse: OK (stille) — auth.flysas.com"_s,
            at + u"SSO-fornyelse: OK (stille) — auth.flysas.com"_s);
        row("file", u"satt til side som tindra-damaged-2027-01-15-120000.sqlite."_s,
            u"satt til side som tindra-damaged-2027-01-15-120000.sqlite."_s);
        row("watcher", at + u"addSearch OK: oslo, bgo->JFK id=7"_s,
            at + u"addSearch OK: (rute) id=7"_s);
        row("failed watcher", u"addSearch FEILET: disk full (tos->EWR,JFK)"_s,
            u"addSearch FEILET: disk full ((rute))"_s);
        row("routes", u"OSL-EWR, xOSL → BKK og CPH–NRT"_s, u"(rute), … → … og (rute)"_s);
        row("names", u"Sjekker BRYLLUPSREISE 2027 nå, hos kari"_s, u"Sjekker … nå, hos …"_s);
        row("codes", u"tom for TOS i dag"_s, u"tom for … i dag"_s);
        row("folders", u"/srv/kari/.local/x, /home/ola/y og /"_s + u"root/z"_s,
            u"~/.local/x, ~/y og ~"_s);
        row("addresses", u"https://ola:pw@sas.no:8/a/b?c=OSL#d, http://x/y"_s,
            u"https://sas.no:8/a/b http://x/y"_s);
        row("e-mail", u"til ola.nordmann+x@example.co.no og a%40b.no"_s,
            u"til (e-post) og (e-post)"_s);
        row("header", u"Set-Cookie: sid=abc; Path=/ og mer"_s, u"Set-Cookie: …"_s);
        row("bearer", u"fikk Bearer abc.def nå"_s, u"fikk Bearer: …"_s);
        row("pairs", u"a[b]=hemmelig&_session=\"x y\", id=1234567 passord: hunter2"_s,
            u"a[b]=…&_session=…, id=… passord: …"_s);
        row("json", u"{\"token\": \"a\\\"b\",\"n\":12}"_s, u"{\"token\": …,\"n\":…}"_s);
        row("tokens",
            u"eyJhb.eyJz.sig, 0123456789abcdef0123, 550e8400-e29b-41d4-a716-446655440000"_s,
            u"…, …, …"_s);
        row("numbers", u"EB 712345678, tlf 98765432, 20270305"_s, u"EB …, tlf …, …"_s);
        row("hidden", u"ola@exa\u200bmple.\u001b[1mcom"_s, u"(e-post)"_s);
    }
    void nothingPrivateLeaves() {
        QFETCH(QString, line);
        QFETCH(QString, expected);
        const Redaction::Secrets secrets{u"/srv/kari"_s,
                                         u"kari"_s,
                                         {u"Bryllupsreise"_s, u"bryllupsreise 2027"_s, u"TOS"_s,
                                          u"BKK"_s, u"xOSL"_s, QString()}};
        QCOMPARE(Redaction::line(line, secrets), expected);
    }

    void hostileLinesAreCut() {
        for (const QString& piece :
             {u"a@"_s, u"\"a\":\""_s, u"OSL,"_s, u"((->"_s, u"a1"_s, u"k="_s}) {
            const QString cut = Redaction::line(piece.repeated(200'000), {});
            QVERIFY(cut.size() <= 401);
        }
    }

    void aWholeOne() {
        AppWorld world;
        world.addWatcher(u"NRT"_s, [](Search& search) { search.name = u"Kirsebær"_s; });
        world.addWatcher(u"EWR"_s, [](Search& search) { search.name = u"Bestemor"_s; });
        world.database.watchers().toggleSearch(2);
        world.addMatch();
        world.addSoldOut();
        PollSummary poll;
        poll.at = world.clock.now();
        poll.errors = QStringList{u"Bestemor: feilet"_s};
        world.database.safekeeping().set(Kept::lastPoll,
                                         QString::fromUtf8(QJsonDocument(poll.toJson()).toJson()));
        world.database.settings().set(Setting::communityUrl, u"https://privat.example"_s);
        world.state.reload();
        QFile log(world.dir.path() + u"/ui.log"_s);
        QVERIFY(log.open(QIODevice::WriteOnly));
        for (int i = 0; i < 5000; ++i)
            log.write("2027-01-15T12:00:00Z linje nr" + QByteArray::number(i) +
                      " om Kirsebær og OSL->NRT, " + QByteArray(60, '-') + "\n");
        log.close();

        const Diagnosis::Program program{u"2.44.1"_s, true, world.dir.path(), u"/home/kari"_s,
                                         u"kari"_s};
        SessionState session;
        session.setLoginStatus(SASLoginStatus::loggedOut());
        const auto facts =
            Diagnosis::collect(world.database, world.state, session, world.clock, program);
        QCOMPARE(facts.log.size(), Diagnosis::logLines);
        const QString text = Diagnosis::text(facts, Diagnosis::secrets(world.state, program));
        for (const QString& part :
             {u"WebKitGTK: 2.44.1"_s, u"for gammel"_s, u"Overvåkere: 2 (1 i gang)"_s,
              u"Treff: 2 (1 utsolgt, 0 fra fellesskapet)"_s, u"SAS: utlogget"_s, u"1 feil"_s,
              u"auto_login: av"_s, u"community_url: egen"_s, u"Lagring: i orden"_s,
              u"linje nr4999 om … og"_s})
            QVERIFY2(text.contains(part), qPrintable(part + u'\n' + text));
        for (const QString& part :
             {u"Kirsebær"_s, u"Bestemor"_s, u"NRT"_s, u"privat"_s, u"nr4899"_s})
            QVERIFY2(!text.contains(part), qPrintable(part));
    }

    void oldEngines_data() {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QDate>("lastGoodDay");
        QTest::newRow("Debian 12") << u"2.50.6"_s << QDate(2026, 9, 30);
        QTest::newRow("spring") << u"2.52.0"_s << QDate(2027, 3, 31);
        QTest::newRow("Debian 13") << u"2.54.2"_s << QDate(2027, 9, 30);
        QTest::newRow("long ago") << u"2.42.5"_s << QDate(2024, 9, 30);
        QTest::newRow("development") << u"2.51.3"_s << QDate(2026, 9, 30);
    }
    void oldEngines() {
        QFETCH(QString, version);
        QFETCH(QDate, lastGoodDay);
        QVERIFY(!EngineAge::warning(version, lastGoodDay));
        const auto warning = EngineAge::warning(version, lastGoodDay.addDays(1));
        QVERIFY(warning && warning->contains(version));
        for (const QString& other : {u""_s, u"2"_s, u"3.0.0"_s, u"abc"_s})
            QVERIFY(!EngineAge::warning(other, QDate(2040, 1, 1)));
    }
};

TINDRA_TEST(TestDiagnosis)
#include "test_diagnosis.moc"
