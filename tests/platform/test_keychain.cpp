// SPDX-License-Identifier: MIT
// The keychain: a real one on a bus of its own, missing, open and locked.
#include "airline/CookieVault.h"
#include "airline/StoredCookies.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/SecretServiceStore.h"
#include "tests/support/FakeCookieStore.h"
#include "tests/support/ManualClock.h"
#include "tests/support/Settled.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Has the keychain's prompts to show, and shows them to nobody.
class MutePrompter : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.keyring.internal.Prompter")
public:
    MutePrompter()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"prompter"_s)) {
        m_bus.registerObject(u"/org/gnome/keyring/Prompter"_s, this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(u"org.gnome.keyring.SystemPrompter"_s);
    }
    ~MutePrompter() override { QDBusConnection::disconnectFromBus(u"prompter"_s); }
    Q_DISABLE_COPY_MOVE(MutePrompter)

    int prompts = 0;
    /// Sends the last prompt back, as if its owner did not want it.
    void refuse() { m_bus.send(m_last.createErrorReply(QDBusError::Failed, u"nobody"_s)); }

public Q_SLOTS:
    void BeginPrompting(const QDBusObjectPath&, const QDBusMessage& message) {
        message.setDelayedReply(true);
        m_last = message;
        ++prompts;
    }
    void StopPrompting(const QDBusObjectPath&) {}

private:
    QDBusConnection m_bus;
    QDBusMessage m_last;
};

template<typename T>
std::shared_ptr<std::optional<T>> watched(QCoro::Task<T> task) {
    const auto result = std::make_shared<std::optional<T>>();
    task.then([result](T value) { *result = std::move(value); });
    settle();
    return result;
}

const WebCookie sessionCookie{u"session"_s, u"v"_s, u"sas.no"_s, u"/"_s, std::nullopt, true};

} // namespace

class TestKeychain : public QObject {
    Q_OBJECT

public:
    explicit TestKeychain(TestBus& bus) : m_bus(bus) {}

private:
    TestBus& m_bus;
    LinuxClock m_clock;

    /// A keychain with the session's cookies in it, locked.
    bool startLocked() {
        if (!m_bus.startSecretService())
            return false;
        SecretServiceStore store(m_clock);
        Keychain keychain(store);
        const QByteArray cookies = StoredCookies::encode({sessionCookie});
        return *awaited(keychain.saveCookieData(cookies)) && m_bus.lockSecretService();
    }

private Q_SLOTS:
    void cleanup() { m_bus.stopSecretService(); }

    void aMissingKeychainIsMissedOnce() {
        SecretServiceStore store(m_clock);
        const QSignalSpy missing(&store, &SecretStore::unavailable);
        QVERIFY(!*awaited(store.find(u"x"_s)));
        const SecretStore::Item item{u"a"_s, "b"};
        QVERIFY(!*awaited(store.add(u"x"_s, u"label"_s, item)));
        awaited(store.remove(u"x"_s));
        QCOMPARE(missing.size(), 1);
        QVERIFY(missing[0][0].toString().contains(u"gnome-keyring"_s));
    }

    void secretsInARealKeychain() {
        QVERIFY(m_bus.startSecretService());
        SecretServiceStore store(m_clock);
        const QSignalSpy missing(&store, &SecretStore::unavailable);
        Keychain keychain(store);
        QVERIFY(!*awaited(keychain.load()));
        const Credentials old{u"EBN123456789"_s, u"old"_s};
        awaited(keychain.save(old.user, old.password));
        const Credentials details{u"medlem@example.no"_s, u"på«ss\"\\ord'\n🛫 Ω"_s};
        awaited(keychain.save(details.user, details.password));
        awaited(keychain.saveCookieData("[1]"));
        awaited(keychain.saveCookieData(QByteArray(200000, 'c')));
        const auto loaded = *awaited(keychain.load());
        QVERIFY2(loaded, qPrintable(missing.value(0).value(0).toString()));
        QCOMPARE(*loaded, details);
        QCOMPARE(awaited(keychain.loadCookieData())->value().size(), 200000);
        awaited(keychain.clear());
        QVERIFY(!*awaited(keychain.load()));
        QVERIFY(*awaited(keychain.loadCookieData()));
        QCOMPARE(missing.size(), 0);
        // Each time it goes is told once, and that it is back.
        const QSignalSpy back(&store, &SecretStore::available);
        m_bus.stopSecretService();
        for (int outage = 1; outage <= 2; ++outage) {
            QVERIFY(!*awaited(keychain.loadCookieData()));
            awaited(keychain.saveCookieData("[2]"));
            QCOMPARE(missing.size(), outage);
            QVERIFY(m_bus.startSecretService());
            QVERIFY(!*awaited(keychain.load()));
            QCOMPARE(back.size(), outage);
            m_bus.stopSecretService();
        }
    }

    void aLockedOneIsAskedOnceAndThenLeftAlone() {
        MutePrompter prompter;
        QVERIFY(startLocked());
        ManualClock clock;
        SecretServiceStore store(clock);
        const QSignalSpy missing(&store, &SecretStore::unavailable);
        Keychain keychain(store);
        const auto read = watched(keychain.loadCookieData());
        QTRY_COMPARE(prompter.prompts, 1);
        // A write that is begun meanwhile waits for its turn, and is spared what the read met.
        clock.advance(30s);
        const auto written = watched(keychain.saveCookieData("[]"));
        clock.advance(30s - 1ms);
        QVERIFY(!*read && !*written);
        clock.advance(1ms);
        QCOMPARE(**read, std::nullopt);
        QCOMPARE(*written, std::optional(false));
        QCOMPARE(clock.waiting(), 0);
        QCOMPARE(missing.size(), 1);

        // While its prompt is on the screen, there is none but once an hour.
        const auto isLeftAlone = [&] {
            const int before = prompter.prompts;
            const auto end = watched(keychain.saveCookieData("[]"));
            QTest::qWait(100);
            return *end == std::optional(false) && prompter.prompts == before;
        };
        clock.advance(1h - 1ms);
        QVERIFY(isLeftAlone());
        clock.advance(1ms);
        const auto hourly = watched(keychain.loadCookieData());
        QVERIFY(!*hourly);
        // Its prompt waits behind the first, which is sent back now.
        QTest::qWait(100);
        prompter.refuse();
        QTRY_COMPARE(prompter.prompts, 2);

        // One that is sent back after its limit is not asked for ten minutes.
        clock.advance(60s);
        prompter.refuse();
        QTest::qWait(100);
        clock.advance(10min - 1ms);
        QVERIFY(isLeftAlone());
        clock.advance(1ms);
        const auto last = watched(keychain.saveCookieData("[]"));
        QVERIFY(!*last);
        QTRY_COMPARE(prompter.prompts, 3);
        clock.advance(60s);
        QCOMPARE(*last, std::optional(false));
        QCOMPARE(missing.size(), 1);
    }

    void nobodyWaitsForALockedOne() {
        MutePrompter prompter;
        QVERIFY(startLocked());
        const QTemporaryDir folder;
        Database database(folder.path(), m_clock);
        FakeCookieStore cookies;
        SecretServiceStore store(m_clock);
        Keychain keychain(store);
        CookieVault vault(cookies, keychain, database.safekeeping(), m_clock, Site{});
        // The main thread goes on with everything else meanwhile.
        QTimer pulse;
        int beats = 0;
        connect(&pulse, &QTimer::timeout, this, [&beats] { ++beats; });
        pulse.start(10ms);
        const Ticks start = m_clock.ticks();
        awaited(vault.restoreCookiesIfNeeded());
        const Ticks end = m_clock.ticks() - start;
        qInfo("ended after %.3f s, with %d beats", end.count(), beats);
        QVERIFY(end >= 1s && end < 5s);
        QVERIFY(beats > 50);
        QCOMPARE(prompter.prompts, 1);
        QVERIFY(cookies.cookies.isEmpty());

        cookies.cookies = {sessionCookie};
        vault.snapshotSoon();
        const Ticks saving = m_clock.ticks();
        awaited(vault.settled(100ms));
        QVERIFY(m_clock.ticks() - saving < 1s);
    }
};

TINDRA_TEST_MAIN(TestKeychain) {
    TestBus bus;
    const QCoreApplication application(argc, argv);
    TestKeychain test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "test_keychain.moc"
