// SPDX-License-Identifier: MIT
#include "airline/CookieRules.h"
#include "airline/CookieVault.h"
#include "airline/StoredCookies.h"
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/CookieStore.h"
#include "platform/MemorySecretStore.h"
#include "tests/support/ManualClock.h"
#include "tests/support/Settled.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A time that binary fractions of a second can tell exactly, so that parts add up to the whole.
constexpr auto moment = 125ms;

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
        co_return QList<WebCookie>(cookies);
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

private:
    QCoro::Task<> turn() {
        if (std::exchange(m_isBusy, true))
            QTest::qFail("the store was busy", __FILE__, __LINE__);
        co_await nextTurn();
        m_isBusy = false;
    }
    bool m_isBusy = false;
};

} // namespace

class TestCookies : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        OneAtATimeStore store;
        MemorySecretStore secrets;
        Keychain keychain{secrets};
        CookieVault vault{store, keychain, clock, Site{}};

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
    };

private Q_SLOTS:
    void whichCookiesAreDeleted_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("domain");
        QTest::addColumn<bool>("prunable");
        const auto row = [](const char* name, const char* domain, bool prunable) {
            QTest::addRow("%s of %s", name, domain)
                << QString::fromLatin1(name) << QString::fromLatin1(domain) << prunable;
        };
        row("session", "sas.no", false);
        row("session", ".sas.no", false);
        row("session", "www.sas.no", false);
        row("session", "..WWW.Sas.NO.", false);
        row("auth0", "flysas.com", false);
        row("auth0", ".auth.flysas.com", false);
        row("session", "evilsas.no", true);
        row("session", "sas.no.evil.com", true);
        row("session", "www.sas.no.evil.com", true);
        row("session", "no", true);
        row("session", "", true);
        row("session", "tracker.example", true);
        row("MUID", "tracker.example", true);
        row("_GA", "sas.no", false);
        row("my_ga", "sas.no", false);
        row("_g", "sas.no", false);
        for (const char* name :
             {"_ga", "_gax", "_gid", "_gcl_au", "_fbp", "_fbc", "_ttp", "ttcsid_C1", "_scid_r",
              "_clck", "_clsk", "_uetsid", "__rtbh.lid", "FPID", "FPAU", "FPLC", "MUID", "__txn_a"})
            row(name, "sas.no", true);
        row("_ga", ".flysas.com", true);
    }
    void whichCookiesAreDeleted() {
        QFETCH(QString, name);
        QFETCH(QString, domain);
        QFETCH(bool, prunable);
        QCOMPARE(SAS::isPrunableCookie(Site{}, name, domain), prunable);
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

    void oneBrokenEntrySpoilsTheVault_data() {
        QTest::addColumn<QByteArray>("data");
        const QJsonObject whole{{u"name"_s, u"n"_s},
                                {u"value"_s, u"v"_s},
                                {u"domain"_s, u"sas.no"_s},
                                {u"path"_s, u"/"_s},
                                {u"secure"_s, true}};
        const auto list = [&whole](const QJsonObject& second) {
            return QJsonDocument(QJsonArray{whole, second}).toJson();
        };
        QVERIFY(StoredCookies::decode(list(whole)));
        for (const QString& member : whole.keys()) {
            QJsonObject broken = whole;
            broken.remove(member);
            QTest::addRow("no %s", qPrintable(member)) << list(broken);
            broken[member] = 1;
            QTest::addRow("%s is a number", qPrintable(member)) << list(broken);
            broken[member] = QJsonValue::Null;
            QTest::addRow("%s is null", qPrintable(member)) << list(broken);
        }
        QJsonObject broken = whole;
        broken[u"secure"_s] = u"TRUE"_s;
        QTest::newRow("secure is a text") << list(broken);
        broken = whole;
        broken[u"expires"_s] = u"2027-01-01"_s;
        QTest::newRow("expires is a text") << list(broken);
        QTest::newRow("an entry is no object") << QByteArray("[1]");
        QTest::newRow("no list") << QJsonDocument(whole).toJson();
        QTest::newRow("cut off") << list(whole).chopped(4);
        QTest::newRow("no text") << QByteArray("\xff\x00", 2);
        QTest::newRow("empty") << QByteArray();
    }
    void oneBrokenEntrySpoilsTheVault() {
        QFETCH(QByteArray, data);
        QVERIFY(!StoredCookies::decode(data));
        World world;
        world.keep(data);
        awaited(world.vault.restoreCookiesIfNeeded());
        QVERIFY(world.store.cookies.isEmpty());
        QVERIFY(world.log().isEmpty());
        QCOMPARE(world.kept(), data);
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

        CookieVault next(world.store, world.keychain, world.clock, Site{});
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

    void cleaningOnceADay() {
        World world;
        const WebCookie foreign = cookie(u"ad"_s, u"tracker.example"_s);
        const auto isCleaned = [&] {
            world.store.cookies = {foreign, cookie(u"session"_s, u"sas.no"_s),
                                   cookie(u"_gid"_s, u".sas.no"_s)};
            awaited(world.vault.pruneCookiesIfStale());
            if (world.store.cookies.size() == 3)
                return false;
            [&] { QCOMPARE(world.left(), QStringList{u"session"_s}); }();
            return true;
        };
        QVERIFY(isCleaned());
        QVERIFY(!isCleaned());
        world.clock.advance(24h - moment);
        QVERIFY(!isCleaned());
        world.clock.advance(moment);
        QVERIFY(isCleaned());

        // One that was asked for counts too.
        world.clock.advance(12h);
        world.store.cookies = {foreign};
        awaited(world.vault.pruneCookiesNow());
        QVERIFY(world.store.cookies.isEmpty());
        world.clock.advance(24h - moment);
        QVERIFY(!isCleaned());
        world.clock.advance(moment);
        QVERIFY(isCleaned());
    }
};

QTEST_GUILESS_MAIN(TestCookies)
#include "test_cookies.moc"
