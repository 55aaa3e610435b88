// SPDX-License-Identifier: MIT
// A person's first days with the demo on their desktop, from the first screen to signing in again
// after the airline has signed them out. The airline is one that this test can ask and upset.
#include "standin/StandIn.h"
#include "tests/e2e/Person.h"
#include "tests/support/NotificationService.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestFirstDays : public QObject {
    Q_OBJECT

public:
    explicit TestFirstDays(TestBus& bus) : m_bus(bus) {}

private:
    TestBus& m_bus;
    Person m_person;
    NotificationService m_notifications{{u"actions"_s, u"body"_s}};
    std::unique_ptr<standin::StandIn> m_airline;
    QProcess m_program;

    void start() {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
        environment.insert(u"PATH"_s, m_bus.home() + u"/bin:"_s + environment.value(u"PATH"_s));
        environment.insert(u"TINDRA_SITE_ORIGIN"_s, m_airline->siteOrigin());
        environment.insert(u"TINDRA_SITE_DOMAIN"_s, m_airline->siteDomain());
        environment.insert(u"TINDRA_IDP_HOST"_s, m_airline->idpHost());
        environment.insert(u"TINDRA_IDP_DOMAIN"_s, m_airline->idpDomain());
        m_program.setProcessEnvironment(environment);
        m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_program.start(builtProgram(u"tindra"_s), {u"--demo"_s});
    }
    int stop() {
        m_program.terminate();
        const bool hasEnded =
            QTest::qWaitFor([this] { return m_program.state() == QProcess::NotRunning; }, 20000);
        return hasEnded ? m_program.exitCode() : -1;
    }

    /// In the airline's window, once it is there.
    void signIn(int formsBefore) {
        QTRY_VERIFY_WITH_TIMEOUT(m_airline->counters().forms > formsBefore, 20000);
        const auto window = m_person.find(
            [](const Person::Item& item) { return item.name.startsWith(u"SAS —"_s); });
        QVERIFY(window);
        // The page's fields stand in the middle, the second form's one line lower.
        QTest::qWait(1500);
        const QPoint field(window->place.center().x(), window->place.top() + 310);
        Person::press(field);
        Person::type(u"demo@tindra.example"_s);
        Person::key(u"Return"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_airline->counters().forms > formsBefore + 1, 20000);
        QTest::qWait(1500);
        const int signIns = m_airline->counters().passwordSignIns;
        Person::press(field + QPoint(0, 30));
        Person::type(u"demo"_s);
        Person::key(u"Return"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_airline->counters().passwordSignIns, signIns + 1, 20000);
        QTest::qWait(1500);
        QVERIFY(m_person.press(u"Ferdig — jeg er innlogget"_s));
    }

    QStringList opened() const {
        QFile file(m_bus.home() + u"/opened"_s);
        return file.open(QIODevice::ReadOnly)
                   ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                   : QStringList();
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_person.isThere());
        standin::Options options;
        options.signIn.isRequired = true;
        // As fast as it may be with a round that can still be watched.
        options.pageDelay = 60ms;
        m_airline = std::make_unique<standin::StandIn>(options);
        QVERIFY(!m_airline->start());
        // What the desktop would open in a browser.
        QVERIFY(QDir(m_bus.home()).mkpath(u"bin"_s));
        QFile browser(m_bus.home() + u"/bin/xdg-open"_s);
        QVERIFY(browser.open(QIODevice::WriteOnly));
        browser.write("#!/bin/sh\necho \"$1\" >>\"$HOME/opened\"\n");
        browser.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void theFirstScreen() {
        start();
        QVERIFY(m_person.sees(u"Demo: flyselskapet"_s));
        QFile limits(u"/proc/%1/limits"_s.arg(m_program.processId()));
        QVERIFY(limits.open(QIODevice::ReadOnly));
        const QString dumps = QString::fromLatin1(limits.readAll()).section(u"core file size"_s, 1);
        QCOMPARE(dumps.simplified().section(u' ', 0, 1), u"1 1"_s);
        QVERIFY(m_person.sees(u"Kom i gang"_s));
        QVERIFY(m_person.press(u"Åpne SAS og logg inn"_s));
        signIn(0);
        QVERIFY(m_person.sees(u"1. Koble til EuroBonus, ferdig"_s));
        QVERIFY(m_person.press(u"USA i business"_s));
        QVERIFY(m_person.sees(u"4 overvåkere er i gang"_s));
        QVERIFY(m_person.press(u"Start jakten"_s));
    }

    void theFirstRound() {
        QVERIFY(m_person.press(u"Overvåkere"_s));
        QVERIFY(m_person.find([](const auto& item) { return item.role == u"progress bar"_s; }));
        QVERIFY(m_person.sees(u"av 60 oppslag · roterer over 960"_s));
        QVERIFY(m_person.sees(u"4 overvåkere"_s, 60000));
    }

    void theNotificationLeadsToTheFind() {
        const auto& sent = m_notifications.received;
        const auto isBoston = [](const NotificationService::Notification& one) {
            return one.summary == u"✈️ Ny bonusreise: Oslo → Boston"_s;
        };
        // The last: its card is at the far end of its journey.
        const auto last = std::find_if(sent.rbegin(), sent.rend(), isBoston);
        QVERIFY(last != sent.rend());
        // "Business · 2 seter · 60 000 poeng", "29.11 11:10 → 29.11 15:55 · 1 stopp (CPH)".
        const QStringList lines = last->body.split(u'\n');
        const QString date = lines.value(1).section(u' ', 0, 0);
        const QString card = u"Oslo → Boston, Utreise, OSL · %1, %2, %3"_s.arg(
            date, lines.value(1).section(u' ', 1, 1), lines.value(0));
        const auto id = static_cast<uint>(sent.rend() - last);
        Q_EMIT m_notifications.ActionInvoked(id, u"default"_s);
        QVERIFY(m_person.sees(card));
        QTest::qWait(1000);
        const auto find = m_person.find([&card](const auto& item) { return item.name == card; });
        QVERIFY(find);

        const auto book = m_person.controlIn(find->place, u"Book på SAS"_s);
        QVERIFY(book);
        Person::press(book->place.center());
        QTRY_COMPARE(opened().size(), 1);
        const QString address = opened().constFirst();
        QVERIFY2(address.startsWith(m_airline->siteOrigin()), qPrintable(address));
        Q_EMIT m_notifications.ActionInvoked(id, u"own"_s);
        QTRY_COMPARE(opened(), QStringList({address, address}));
        const QString day = date.section(u'.', 1, 1) + date.section(u'.', 0, 0);
        QVERIFY2(address.contains(u"OSL"_s) && address.contains(u"BOS"_s) && address.contains(day),
                 qPrintable(address));
    }

    void aWatcherIsPaused() {
        QVERIFY(m_person.press(u"Overvåkere"_s));
        QVERIFY(m_person.press(u"Overvåker OSL → LHR"_s));
        QVERIFY(m_person.sees(u"Pauset"_s));
        QVERIFY(m_person.sees(u"3 aktive"_s));
    }

    void aWatcherIsEdited() {
        QVERIFY(m_person.press(u"Rediger søket…"_s));
        QVERIFY(m_person.press(u"Navn"_s));
        Person::key(u"ctrl+a"_s);
        Person::type(u"Vinter i Bangkok"_s);
        QVERIFY(m_person.press(u"Lagre"_s));
        QVERIFY(m_person.sees(u"Overvåker Vinter i Bangkok"_s));
    }

    void settingsAreKeptOverARestart() {
        QVERIFY(m_person.press(u"Innstillinger"_s));
        QVERIFY(m_person.press(u"30 min"_s));
        QVERIFY(m_person.press(u"Varsle når treff blir utsolgt"_s));
        QCOMPARE(stop(), 0);
        start();
        QVERIFY(m_person.press(u"Innstillinger"_s));
        QVERIFY(m_person.control(u"30 min"_s)->isChecked);
        QVERIFY(!m_person.control(u"Varsle når treff blir utsolgt"_s)->isChecked);
        QVERIFY(m_person.control(u"Skrivebordsvarsler ved nye treff"_s)->isChecked);
        QVERIFY(m_person.press(u"Overvåkere"_s));
        QVERIFY(m_person.sees(u"Overvåker Vinter i Bangkok"_s));
        // Its first round ends, still signed in.
        QVERIFY(m_person.sees(u"3 overvåkere"_s, 60000));
    }

    void signedOutAndInAgain() {
        m_airline->expireSiteSession();
        m_airline->expireSso();
        QVERIFY(m_person.press(u"Innstillinger"_s));
        QVERIFY(m_person.press(u"Sjekk innlogging"_s));
        QVERIFY(m_person.sees(u"Ikke innlogget hos SAS"_s, 120000));
        const int forms = m_airline->counters().forms;
        QVERIFY(m_person.press(u"Logg inn nå"_s));
        // The window that is closed meanwhile comes back for who has signed in.
        QVERIFY(m_person.sees(u"SAS —"_s));
        QVERIFY(Person::close(u"Tindra"_s));
        QVERIFY(m_person.press(u"Fortsett i bakgrunnen"_s));
        QTRY_VERIFY(!m_person.seesNow(u"Overvåkere"_s));
        signIn(forms);
        QVERIFY(m_person.press(u"Innstillinger"_s));
        QVERIFY(m_person.sees(u"Innlogget hos SAS ·"_s, 60000));
        QVERIFY(!m_person.seesNow(u"Ikke innlogget hos SAS"_s));
        QCOMPARE(stop(), 0);
    }
};

TINDRA_TEST_MAIN(TestFirstDays) {
    TestBus bus;
    const QCoreApplication application(argc, argv);
    TestFirstDays test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "test_first_days.moc"
