// SPDX-License-Identifier: MIT
// A person's first days with the program: signing in by hand in the real window, hunting, starting
// again with an emptied browser, signing in automatically; and that no secret is left anywhere.
#include "core/Database.h"
#include "core/Keychain.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/SecretServiceStore.h"
#include "standin/StandIn.h"
#include "tests/support/NotificationService.h"
#include "tests/support/Settled.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString userName = u"medlem.canary@tindra.example"_s;
const QString password = u"Kanarifugl-7391-passord"_s;

} // namespace

class TestSignInProgram : public QObject {
    Q_OBJECT

public:
    explicit TestSignInProgram(TestBus& bus) : m_bus(bus) {}

private:
    TestBus& m_bus;
    std::unique_ptr<standin::StandIn> m_airline;
    QByteArray m_output;

    QString data() const { return m_bus.home() + u"/data/Tindra"_s; }

    std::unique_ptr<QProcess> start(const QStringList& arguments) {
        auto program = std::make_unique<QProcess>();
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TINDRA_SITE_ORIGIN"_s, m_airline->siteOrigin());
        environment.insert(u"TINDRA_SITE_DOMAIN"_s, m_airline->siteDomain());
        environment.insert(u"TINDRA_IDP_HOST"_s, m_airline->idpHost());
        environment.insert(u"TINDRA_IDP_DOMAIN"_s, m_airline->idpDomain());
        program->setProcessEnvironment(environment);
        program->setProcessChannelMode(QProcess::MergedChannels);
        program->start(builtProgram(u"tindra"_s), arguments);
        return program;
    }
    int finish(QProcess& program) {
        const bool ended =
            QTest::qWaitFor([&program] { return program.state() == QProcess::NotRunning; }, 120000);
        if (!ended)
            program.kill();
        program.waitForFinished();
        const QByteArray output = program.readAll();
        m_output += output;
        if (program.exitCode() != 0)
            qWarning("%s", output.constData());
        return ended ? program.exitCode() : -1;
    }
    int run(const QStringList& arguments) { return finish(*start(arguments)); }

    static QByteArray desktop(const QStringList& arguments) {
        QProcess xdotool;
        xdotool.start(u"xdotool"_s, arguments);
        xdotool.waitForFinished(5000);
        return xdotool.readAllStandardOutput().trimmed();
    }
    static void click(int x, int y) {
        desktop({u"mousemove"_s, QString::number(x), QString::number(y), u"click"_s, u"1"_s});
        QTest::qWait(300);
    }
    QByteArray log() const {
        QFile file(data() + u"/ui.log"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    int formsShown() const { return m_airline->counters().forms; }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_bus.startSecretService());
        standin::Options options;
        options.signIn.isRequired = true;
        options.signIn.user = userName;
        options.signIn.password = password;
        m_airline = std::make_unique<standin::StandIn>(options);
        QVERIFY(!m_airline->start());
        const LinuxClock clock;
        Database database(data(), clock);
        Search search;
        search.origin = u"OSL"_s;
        search.destination = u"LHR"_s;
        search.cabins = {Cabin::economy, Cabin::business};
        search.dateFrom = clock.today().addDays(20);
        search.dateTo = clock.today().addDays(23);
        database.watchers().addSearch(search);
    }

    void signingInByHand() {
        const auto program = start({u"sign-in"_s});
        QByteArray window;
        QVERIFY(QTest::qWaitFor(
            [&window] {
                window = desktop({u"search"_s, u"--name"_s, u"SAS — logg inn på EuroBonus"_s});
                return !window.isEmpty();
            },
            20000));
        QTRY_COMPARE_WITH_TIMEOUT(formsShown(), 1, 20000);
        QTest::qWait(1500);
        // The window is 1280 by 940, in the middle of a screen of 1400 by 1000.
        click(700, 340);
        desktop({u"type"_s, userName});
        QTest::qWait(1000);
        desktop({u"key"_s, u"Return"_s});
        QTRY_COMPARE_WITH_TIMEOUT(formsShown(), 2, 20000);
        QTest::qWait(1500);
        click(700, 370);
        desktop({u"type"_s, password});
        QTest::qWait(1000);
        desktop({u"key"_s, u"Return"_s});
        QTRY_COMPARE_WITH_TIMEOUT(m_airline->counters().passwordSignIns, 1, 20000);
        QTest::qWait(1500);
        click(1212, 56);
        QCOMPARE(finish(*program), 0);
        QVERIFY(m_output.contains("Innlogget hos SAS, bekreftet med et ekte oppslag."));
        QVERIFY(log().contains(
            "innlogging: vindu lukket — auth0-runde fullfoert, oekten regnes fersk"));
    }

    void huntingWithTheSession() {
        QCOMPARE(run({u"hunt"_s, u"--once"_s}), 0);
        QCOMPARE(m_airline->counters().passwordSignIns, 1);
    }

    void startingAgainWithAnEmptiedBrowser() {
        QVERIFY(QDir(data() + u"/web"_s).removeRecursively());
        QCOMPARE(run({u"hunt"_s, u"--once"_s}), 0);
        QVERIFY(log().contains("cookie-hvelv: la tilbake "));
        QCOMPARE(m_airline->counters().passwordSignIns, 1);
    }

    void signingInAutomatically() {
        LinuxClock clock;
        SecretServiceStore store(clock);
        Keychain keychain(store);
        awaited(keychain.save(userName, password));
        {
            Database database(data(), clock);
            database.settings().set(Setting::autoLogin, true);
            // Without anything to watch, one lookup shows that the session is dead instead of
            // three.
            database.watchers().toggleSearch(1);
        }
        m_airline->expireSiteSession();
        m_airline->expireSso();
        QVERIFY(QDir(data() + u"/web"_s).removeRecursively());
        const auto program = start({u"sign-in"_s});
        QByteArray window;
        QVERIFY(QTest::qWaitFor(
            [&window] {
                window = desktop({u"search"_s, u"--name"_s, u"SAS — logg inn på EuroBonus"_s});
                return !window.isEmpty();
            },
            20000));
        QTest::qWait(2000);
        click(1212, 56);
        // Nothing was signed in there, so the lookups come back empty and the form is filled in.
        QTRY_COMPARE_WITH_TIMEOUT(m_airline->counters().passwordSignIns, 2, 120000);
        QCOMPARE(m_airline->lastPassword(), password);
        QCOMPARE(finish(*program), 0);
        QVERIFY(log().contains("auto-innlogging: fullfoert"));
        QVERIFY(log().contains("UTEN fullfoert auth0-runde"));
    }

    void noSecretIsLeftAnywhere() {
        LinuxClock clock;
        SecretServiceStore store(clock);
        Keychain keychain(store);
        const auto vault = awaited(keychain.loadCookieData())->value_or(QByteArray());
        QByteArrayList secrets{password.toUtf8()};
        static const QRegularExpression value(u"\"value\":\"([^\"]{12,})\""_s);
        for (auto match = value.globalMatch(QString::fromUtf8(vault)); match.hasNext();)
            secrets.append(match.next().captured(1).toUtf8());
        QVERIFY(secrets.size() > 2);
        static const QRegularExpression code(u"[?&]code=([^& ]+)"_s);
        for (const QString& request : m_airline->requests(m_airline->siteDomain())) {
            if (const auto match = code.match(request); match.hasMatch())
                secrets.append(match.captured(1).toUtf8());
        }
        int files = 0;
        QDirIterator entries(m_bus.home(), QDir::Files | QDir::Hidden,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            QFile file(entries.next());
            if (!file.open(QIODevice::ReadOnly))
                continue;
            ++files;
            const QByteArray content = file.readAll();
            // The browser's own store keeps cookies and the pages' addresses; nothing keeps the
            // password.
            const bool isBrowsers = file.fileName().contains(u"/web/"_s);
            for (const QByteArray& secret : std::as_const(secrets)) {
                if (!isBrowsers || secret == password.toUtf8())
                    QVERIFY2(!content.contains(secret), qPrintable(file.fileName()));
            }
        }
        QVERIFY(files > 5);
        for (const QByteArray& secret : std::as_const(secrets))
            QVERIFY(!m_output.contains(secret));
        QVERIFY(m_output.contains("OSL→LHR"));
    }
};

TINDRA_TEST_MAIN(TestSignInProgram) {
    TestBus bus;
    const QCoreApplication application(argc, argv);
    TestSignInProgram test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "test_sign_in_program.moc"
