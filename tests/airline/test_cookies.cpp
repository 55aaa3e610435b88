// SPDX-License-Identifier: MIT
#include "airline/CookieRules.h"
#include "airline/CookieVault.h"
#include "airline/StoredCookies.h"
#include "core/Database.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/CookieStore.h"
#include "platform/SecretStore.h"
#include "tests/support/ManualClock.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

WebCookie cookie(const QString& name, const QString& domain,
                 std::optional<Instant> expires = std::nullopt) {
    return {name, u"live"_s, domain, u"/"_s, expires, false};
}

QStringList names(const QList<WebCookie>& cookies) {
    QStringList list;
    for (const WebCookie& each : cookies)
        list.append(each.name);
    return list;
}

/// Cookies in memory. As a browser's store it does one thing at a time; a second one that is begun
/// meanwhile fails the test.
class OneAtATimeStore final : public CookieStore {
public:
    QCoro::Task<std::optional<QList<WebCookie>>> all() override {
        co_await turn();
        co_return isDead ? std::nullopt : std::optional(cookies);
    }
    QCoro::Task<bool> set(WebCookie cookie) override {
        co_await turn();
        if (cookie.domain.isEmpty())
            co_return false;
        cookies.append(cookie);
        co_return true;
    }
    QCoro::Task<> remove(WebCookie cookie) override {
        co_await turn();
        cookies.removeAll(cookie);
    }

    QList<WebCookie> cookies;
    bool isDead = false;

private:
    QCoro::Task<> turn() {
        if (std::exchange(m_isBusy, true))
            QTest::qFail("the store was busy", __FILE__, __LINE__);
        co_await nextTurn();
        m_isBusy = false;
    }
    bool m_isBusy = false;
};

/// A keychain whose owner takes their time; it notes what it is asked for.
class SlowSecrets final : public SecretStore {
public:
    explicit SlowSecrets(Clock& clock) : m_clock(clock) {}
    QCoro::Task<bool> add(QString service, QString, Item item) override {
        co_await answer(u"add"_s);
        if (takes)
            items.insert(service, item);
        co_return bool(takes);
    }
    QCoro::Task<std::optional<Item>> find(QString service) override {
        co_await answer(u"find"_s);
        co_return items.contains(service) ? std::optional(items.value(service)) : std::nullopt;
    }
    QCoro::Task<> remove(QString) override {
        QTest::qFail("nothing is to be removed", __FILE__, __LINE__);
        co_return;
    }

    QMap<QString, Item> items;
    QStringList asked;
    std::chrono::milliseconds delay{};
    bool takes = true;

private:
    QCoro::Task<> answer(QString question) {
        asked.append(question);
        if (delay > 0ms)
            co_await m_clock.sleep(delay);
        else
            co_await nextTurn();
    }
    Clock& m_clock;
};

/// Whether the task has ended yet.
std::shared_ptr<bool> watched(QCoro::Task<> task) {
    const auto hasEnded = std::make_shared<bool>(false);
    task.then([hasEnded] { *hasEnded = true; });
    settle();
    return hasEnded;
}

} // namespace

class TestCookies : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        OneAtATimeStore store;
        SlowSecrets secrets{clock};
        Keychain keychain{secrets};
        Database database{dir.path(), clock};
        CookieVault vault{store, keychain, database.safekeeping(), clock, Site{}};

        World() { TDLog::start(dir.path() + u"/ui.log"_s, &clock); }
        ~World() {
            settle();
            TDLog::start({}, nullptr);
        }

        void keep(const QByteArray& data) {
            secrets.items.insert(u"app.tindra.Tindra.sascookies"_s, {u"cookies"_s, data});
        }
        QByteArray kept() const {
            return secrets.items.value(u"app.tindra.Tindra.sascookies"_s).data;
        }
        QByteArray log() const {
            QFile file(dir.path() + u"/ui.log"_s);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }
        QStringList left() const { return names(store.cookies); }
        /// What the vault of the next run does first.
        void restoreInNextRun() {
            CookieVault next(store, keychain, database.safekeeping(), clock, Site{});
            awaited(next.restoreCookiesIfNeeded());
        }
    };

private Q_SLOTS:
    void whichCookiesAreDeleted() {
        const auto isPruned = [](const char* name, const char* domain) {
            return SAS::isPrunableCookie(Site{}, QString::fromLatin1(name),
                                         QString::fromLatin1(domain));
        };
        for (const char* domain : {"sas.no", ".sas.no", "www.sas.no", "..WWW.Sas.NO.", "flysas.com",
                                   ".auth.flysas.com"}) {
            QVERIFY2(!isPruned("session", domain), domain);
            QVERIFY2(isPruned("_ga", domain), domain);
        }
        for (const char* domain :
             {"evilsas.no", "sas.no.evil.com", "www.sas.no.evil.com", "no", "", "tracker.example"})
            QVERIFY2(isPruned("session", domain), domain);
        for (const char* name : {"_GA", "my_ga", "_g"})
            QVERIFY2(!isPruned(name, "sas.no"), name);
        for (const char* name :
             {"_ga", "_gax", "_gid", "_gcl_au", "_fbp", "_fbc", "_ttp", "ttcsid_C1", "_scid_r",
              "_clck", "_clsk", "_uetsid", "__rtbh.lid", "FPID", "FPAU", "FPLC", "MUID", "__txn_a"})
            QVERIFY2(isPruned(name, "sas.no"), name);
    }

    void theSavedForm() {
        const QList<WebCookie> cookies{
            {u"n"_s, u"v æ"_s, u".sas.no"_s, u"/b"_s, instantFromSeconds(978307200.5), true},
            {u"s"_s, u""_s, u"sas.no"_s, u"/"_s, std::nullopt, false}};
        const QByteArray saved = R"([
            {"domain":".sas.no", "expires":0.5, "name":"n", "path":"/b", "secure":true, "value":"v æ"},
            {"domain":"sas.no", "name":"s", "path":"/", "secure":false, "value":""}
        ])";
        QCOMPARE(QJsonDocument::fromJson(StoredCookies::encode(cookies)),
                 QJsonDocument::fromJson(saved));
        QCOMPARE(StoredCookies::decode(saved), cookies);
        QCOMPARE(StoredCookies::decode("[]"), QList<WebCookie>());
    }

    void oneBrokenEntrySpoilsTheVault() {
        const QJsonObject whole{{u"name"_s, u"n"_s},
                                {u"value"_s, u"v"_s},
                                {u"domain"_s, u"sas.no"_s},
                                {u"path"_s, u"/"_s},
                                {u"secure"_s, true}};
        const auto list = [&whole](const QJsonObject& second) {
            return QJsonDocument(QJsonArray{whole, second}).toJson();
        };
        QVERIFY(StoredCookies::decode(list(whole)));
        QList<QByteArray> all{"[1]", QJsonDocument(whole).toJson(), list(whole).chopped(4),
                              QByteArray("\xff\x00", 2), ""};
        const auto spoil = [&](const QString& member, const QJsonValue& value) {
            QJsonObject broken = whole;
            broken[member] = value;
            all.append(list(broken));
        };
        for (const QString& member : whole.keys()) {
            for (const QJsonValue& value :
                 {QJsonValue(QJsonValue::Undefined), QJsonValue(1), QJsonValue(QJsonValue::Null)})
                spoil(member, value);
        }
        spoil(u"secure"_s, u"TRUE"_s);
        spoil(u"expires"_s, u"2027-01-01"_s);
        for (const QByteArray& data : std::as_const(all))
            QVERIFY2(!StoredCookies::decode(data), data);
        World world;
        world.keep(all.last(2).first());
        awaited(world.vault.restoreCookiesIfNeeded());
        QVERIFY(world.store.cookies.isEmpty());
        QVERIFY(world.log().isEmpty());
    }

    void whatIsMissingComesBack() {
        World world;
        const WebCookie live = cookie(u"live"_s, u"sas.no"_s);
        world.store.cookies = {live};
        WebCookie saved = live;
        saved.value = u"old"_s;
        WebCookie session = cookie(u"session"_s, u".sas.no"_s);
        session.secure = true;
        WebCookie sessionDeeper = session;
        sessionDeeper.path = u"/booking"_s;
        const QList<WebCookie> back{cookie(u"live"_s, u".sas.no"_s), session, sessionDeeper,
                                    cookie(u"now"_s, u"sas.no"_s, world.clock.now()),
                                    cookie(u"later"_s, u"flysas.com"_s, world.clock.now() + 1h)};
        QList<WebCookie> all = back;
        all.insert(1, saved);
        all.insert(2, cookie(u"over"_s, u"sas.no"_s, world.clock.now() - moment));
        // The store takes no cookie without a domain.
        all.insert(3, cookie(u"refused"_s, u""_s));
        world.keep(StoredCookies::encode(all));

        awaited(world.vault.restoreCookiesIfNeeded());
        QCOMPARE(world.store.cookies, QList<WebCookie>{live} + back);
        QCOMPARE(world.log(), "2027-01-15T12:00:00Z cookie-hvelv: la tilbake 5 SAS-cookies\n");
    }

    void onceARun() {
        World world;
        // A vault that was empty at first is not asked again.
        awaited(world.vault.restoreCookiesIfNeeded());
        world.keep(StoredCookies::encode({cookie(u"a"_s, u"sas.no"_s)}));
        awaited(world.vault.restoreCookiesIfNeeded());
        QVERIFY(world.store.cookies.isEmpty());
        QVERIFY(world.log().isEmpty());

        CookieVault next(world.store, world.keychain, world.database.safekeeping(), world.clock,
                         Site{});
        next.restoreCookiesIfNeeded();
        next.restoreCookiesIfNeeded();
        settle();
        QCOMPARE(world.left(), QStringList{u"a"_s});
        QCOMPARE(world.log().count('\n'), 1);
    }

    void aSnapshotHoldsTheAirlinesCookiesOnly() {
        World world;
        WebCookie secure = cookie(u"session"_s, u"WWW.sas.no"_s, world.clock.now() + 1h);
        secure.secure = true;
        const QList<WebCookie> own{secure, cookie(u"auth0"_s, u".auth.flysas.com"_s)};
        const QList<WebCookie> foreign{
            cookie(u"_ga"_s, u"sas.no"_s), cookie(u"session"_s, u"sas.no.evil.com"_s),
            cookie(u"session"_s, u"evilsas.no"_s), cookie(u"session"_s, u"tracker.example"_s)};
        world.store.cookies = foreign;
        world.keep("good");
        awaited(world.vault.snapshotCookies());
        QCOMPARE(world.kept(), "good");

        world.store.cookies += own;
        awaited(world.vault.snapshotCookies());
        QCOMPARE(StoredCookies::decode(world.kept()), own);
        QCOMPARE(world.store.cookies, foreign + own);
        QVERIFY(world.log().isEmpty());
    }

    void whatIsRememberedOfThemIsNoSecret() {
        World world;
        world.store.cookies = {cookie(u"over"_s, u"sas.no"_s, world.clock.now() - moment),
                               cookie(u"later"_s, u".sas.no"_s, instantFromSeconds(1978307200.5)),
                               cookie(u"auth0"_s, u"auth.flysas.com"_s)};
        const auto remembered = [&world] {
            awaited(world.vault.snapshotCookies());
            const auto text = world.database.safekeeping().get(Kept::sessionCookies);
            return QJsonDocument::fromJson(text.value_or(QString()).toUtf8());
        };
        world.secrets.takes = false;
        QVERIFY(remembered().isNull());
        world.secrets.takes = true;
        QCOMPARE(remembered(), QJsonDocument::fromJson(R"([
            {"domain":".sas.no", "expires":1000000000.5, "name":"later"},
            {"domain":"auth.flysas.com", "name":"auth0"}])"));
    }

    void whatTheBrowserHasIsNotAskedFor() {
        const auto isAsked = [](const QString& missing, std::chrono::minutes later) {
            World world;
            world.store.cookies = {cookie(u"session"_s, u".sas.no"_s),
                                   cookie(u"lasting"_s, u"flysas.com"_s, world.clock.now() + 1h),
                                   cookie(u"_ga"_s, u"sas.no"_s)};
            awaited(world.vault.snapshotCookies());
            world.secrets.asked.clear();
            world.store.cookies.removeIf(
                [&](const WebCookie& each) { return each.name == missing; });
            // One of the same name elsewhere is another cookie.
            world.store.cookies.append(cookie(missing, u"www.sas.no"_s));
            world.clock.advance(later);
            world.restoreInNextRun();
            const bool asked = !world.secrets.asked.isEmpty();
            return asked && world.left().count(missing) == 2;
        };
        QVERIFY(!isAsked({}, 0min));
        QVERIFY(isAsked(u"session"_s, 0min));
        QVERIFY(isAsked(u"lasting"_s, 59min));
        QVERIFY(!isAsked(u"lasting"_s, 61min));
        QVERIFY(!isAsked(u"_ga"_s, 0min));
    }

    void whatIsNotKnownIsAskedFor() {
        World world;
        world.keep(StoredCookies::encode({cookie(u"a"_s, u"sas.no"_s)}));
        // Not knowing what lives, nothing is asked; the next call tries again.
        world.store.isDead = true;
        awaited(world.vault.restoreCookiesIfNeeded());
        QVERIFY(world.secrets.asked.isEmpty());
        world.store.isDead = false;
        awaited(world.vault.restoreCookiesIfNeeded());
        QCOMPARE(world.left(), QStringList{u"a"_s});

        for (const QString& broken : {u"{}"_s, u"[{\"name\":\"a\"}]"_s}) {
            world.database.safekeeping().set(Kept::sessionCookies, broken);
            world.store.cookies.clear();
            world.restoreInNextRun();
            QCOMPARE(world.left(), QStringList{u"a"_s});
        }
    }

    void aSlowKeychainIsNotWaitedFor() {
        World world;
        const auto saved = [&](const char* name, std::chrono::seconds left) {
            return cookie(QString::fromLatin1(name), u"sas.no"_s, world.clock.now() + left);
        };
        WebCookie old = saved("renewed", 1h);
        old.value = u"old"_s;
        world.keep(StoredCookies::encode({old, saved("missing", 1h), saved("short", 10s)}));
        world.secrets.delay = 20s;
        const auto hasEnded = watched(world.vault.restoreCookiesIfNeeded());
        world.clock.advance(1s - moment);
        QVERIFY(!*hasEnded);
        world.clock.advance(moment);
        QVERIFY(*hasEnded);
        // The hunt goes on, with whatever it gets by itself, and asks again in vain.
        const WebCookie renewed = saved("renewed", 2h);
        world.store.cookies = {renewed};
        QVERIFY(*watched(world.vault.restoreCookiesIfNeeded()));
        world.clock.advance(19s - moment);
        QCOMPARE(world.store.cookies, QList<WebCookie>{renewed});
        world.clock.advance(moment);
        QCOMPARE(world.left(), QStringList({u"renewed"_s, u"missing"_s}));
        QCOMPARE(world.store.cookies.first(), renewed);
        QVERIFY(*watched(world.vault.restoreCookiesIfNeeded()));
        QCOMPARE(world.secrets.asked, QStringList{u"find"_s});
        QCOMPARE(world.log(), "2027-01-15T12:00:01Z cookie-hvelv: noekkelringen svarer ikke ennaa "
                              "— gaar videre uten\n"
                              "2027-01-15T12:00:20Z cookie-hvelv: la tilbake 1 SAS-cookies\n");
        QCOMPARE(world.clock.waiting(), 0);
    }

    void aLateAnswerToAVaultThatIsGone() {
        for (const auto later : {0s, 5s}) {
            World world;
            world.keep(StoredCookies::encode({cookie(u"a"_s, u"sas.no"_s)}));
            world.secrets.delay = 20s;
            auto vault = std::make_unique<CookieVault>(
                world.store, world.keychain, world.database.safekeeping(), world.clock, Site{});
            const auto hasEnded = watched(vault->restoreCookiesIfNeeded());
            vault->snapshotSoon();
            world.clock.advance(later);
            vault.reset();
            world.clock.advance(1s);
            QVERIFY(*hasEnded);
            world.clock.advance(1min);
            QVERIFY(world.store.cookies.isEmpty());
            QCOMPARE(world.clock.waiting(), 0);
        }
    }

    void snapshotsAreWrittenBeside() {
        World world;
        world.secrets.delay = 20s;
        QVERIFY(*watched(world.vault.settled(1h)));
        world.store.cookies = {cookie(u"a"_s, u"sas.no"_s)};
        world.vault.snapshotSoon();
        const auto impatient = watched(world.vault.settled(5s));
        world.clock.advance(5s - moment);
        QVERIFY(!*impatient);
        world.clock.advance(moment);
        QVERIFY(*impatient);
        // However often it is wished for meanwhile, there is one more, with what there is then.
        world.store.cookies = {cookie(u"b"_s, u"sas.no"_s)};
        world.vault.snapshotSoon();
        world.vault.snapshotSoon();
        const auto waiting = watched(world.vault.snapshotCookies());
        const auto patient = watched(world.vault.settled(1h));
        world.clock.advance(15s);
        QCOMPARE(names(*StoredCookies::decode(world.kept())), QStringList{u"a"_s});
        world.store.cookies.append(cookie(u"c"_s, u"sas.no"_s));
        world.clock.advance(20s - moment);
        QVERIFY(!*waiting && !*patient);
        world.clock.advance(moment);
        QVERIFY(*waiting && *patient);
        QCOMPARE(names(*StoredCookies::decode(world.kept())), QStringList{u"b"_s});
        QCOMPARE(world.secrets.asked, QStringList({u"add"_s, u"add"_s}));
        QCOMPARE(world.clock.waiting(), 0);

        // Its end is the end of those who wait, too.
        auto vault = std::make_unique<CookieVault>(
            world.store, world.keychain, world.database.safekeeping(), world.clock, Site{});
        vault->snapshotSoon();
        const auto orphan = watched(vault->settled(1h));
        vault.reset();
        settle();
        QVERIFY(*orphan);
        world.clock.advance(20s);
        QCOMPARE(world.clock.waiting(), 0);
    }

    void cleaningOnceADay() {
        World world;
        const auto isCleaned = [&] {
            world.store.cookies = {cookie(u"ad"_s, u"tracker.example"_s),
                                   cookie(u"session"_s, u"sas.no"_s)};
            awaited(world.vault.pruneCookiesIfStale());
            return world.left() == QStringList{u"session"_s};
        };
        QVERIFY(isCleaned());
        world.clock.advance(24h - moment);
        QVERIFY(!isCleaned());
        world.clock.advance(moment);
        QVERIFY(isCleaned());

        // One that was asked for counts too.
        world.clock.advance(12h);
        awaited(world.vault.pruneCookiesNow());
        world.clock.advance(24h - moment);
        QVERIFY(!isCleaned());
    }
};

TINDRA_TEST(TestCookies)
#include "test_cookies.moc"
