// SPDX-License-Identifier: MIT
// What is shared through the service, the same on both stores.
#include "World.h"
#include "tests/support/TestProgram.h"

#include <sqlite3.h>

#include <QFile>
#include <QJsonDocument>
#include <QTest>

#include <mutex>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

QByteArray soldOut(const QJsonObject& find) {
    return QJsonDocument(QJsonObject{{u"key"_s, find[u"key"_s]}, {u"cabin"_s, find[u"cabin"_s]}})
        .toJson();
}

struct Sqlite {
    sqlite3* db = nullptr;

    explicit Sqlite(const std::string& path) { sqlite3_open(path.c_str(), &db); }
    ~Sqlite() { sqlite3_close(db); }
    Q_DISABLE_COPY_MOVE(Sqlite)

    int run(const char* sql) const { return sqlite3_exec(db, sql, nullptr, nullptr, nullptr); }
    int count() const {
        int result = -1;
        const auto first = [](void* into, int, char** row, char**) {
            *static_cast<int*>(into) = atoi(*row);
            return 0;
        };
        sqlite3_exec(db, "SELECT count(*) FROM finds", first, &result, nullptr);
        return result;
    }
};

} // namespace

class SharingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();
    void reportedFindsAreShown();
    void findsExpireAndReportsRenewThem();
    void soldOutDropsOneCabin();
    void servicesAndRestartsShareTheStore();
    void answersAreBoundedAndNewestFirst();
    void theStoreIsBounded();
    void aStoreThatIsGone();

private:
    std::unique_ptr<World> m_world;
};

void SharingTest::initTestCase_data() {
    QTest::addColumn<bool>("isRedis");
    QTest::newRow("sqlite") << false;
    QTest::newRow("redis") << true;
}

void SharingTest::init() {
    QFETCH_GLOBAL(bool, isRedis);
    m_world = std::make_unique<World>(isRedis);
}

void SharingTest::cleanup() {
    m_world.reset();
}

void SharingTest::reportedFindsAreShown() {
    const auto service = m_world->service();
    const Http http = World::http(*service);
    QVERIFY(http.hits("OSL-BKK").isEmpty());

    const QJsonObject first = World::find();
    QJsonObject second = World::find(u"BGO-NYC"_s);
    second[u"foundAt"_s] = qint64(World::start / 1000 + 9000); // its clock is ahead
    QJsonObject third = World::find(u"OSL-BKK"_s, u"SK1"_s);
    third[u"watcher"_s] = u"secret"_s;
    for (const QJsonObject& find : {first, second, third}) {
        m_world->pass(1s);
        QCOMPARE(http.report({find}), 204);
    }
    second[u"foundAt"_s] = qint64(World::start / 1000 + 2);
    third.remove(u"watcher"_s);
    QCOMPARE(http.hits("OSL-BKK,BGO-NYC,oslo,OSL-BKK"), (QJsonArray{third, second, first}));
    QCOMPARE(http.get("/v1/hits?x=1&routes=BGO-NYC%2cABC-DEF").hits(), QJsonArray{second});
    QVERIFY(http.hits("BKK-OSL").isEmpty());
}

void SharingTest::findsExpireAndReportsRenewThem() {
    const auto service = m_world->service();
    const Http http = World::http(*service);
    const QJsonObject once = World::find(u"OSL-BKK"_s, u"SK1"_s);
    QJsonObject twice = World::find(u"OSL-BKK"_s, u"SK2"_s);
    QCOMPARE(http.report({once, twice}), 204);
    m_world->pass(60min);
    twice[u"seats"_s] = 5;
    QCOMPARE(http.report({twice}), 204);
    m_world->pass(30min - 100ms);
    QCOMPARE(http.hits("OSL-BKK"), (QJsonArray{twice, once}));
    m_world->pass(100ms); // less than a ready answer is kept
    QCOMPARE(http.hits("OSL-BKK"), QJsonArray{twice});
    m_world->pass(60min);
    QVERIFY(http.hits("OSL-BKK").isEmpty());

    QCOMPARE(http.report({once}), 204);
    if (m_world->redis) // of three keys, none stays longer than a find
        QCOMPARE(
            m_world->redis->ask("EVAL \"local n = 0 for _, k in ipairs(redis.call('KEYS', '*')) "
                                "do local t = redis.call('PTTL', k) "
                                "if t > 0 and t <= 5400000 then n = n + 1 end end return n\" 0"),
            ":3\r\n");
    else
        QCOMPARE(Sqlite(m_world->file()).count(), 1);
}

void SharingTest::soldOutDropsOneCabin() {
    const auto service = m_world->service();
    const Http http = World::http(*service);
    const QJsonObject business = World::find();
    const QJsonObject first = World::find(u"OSL-BKK"_s, u"SK1467,TG955"_s, u"first"_s);
    QCOMPARE(http.report({business, first}), 204);
    QCOMPARE(http.hits("OSL-BKK").size(), 2);
    QCOMPARE(http.post("/v1/soldout", soldOut(business)).status, 204);
    QCOMPARE(http.hits("OSL-BKK"), QJsonArray{first});
    QCOMPARE(http.post("/v1/soldout", soldOut(business)).status, 204); // long gone
    QCOMPARE(http.report({business}), 204);                            // and here it is again
    QCOMPARE(http.hits("OSL-BKK").size(), 2);
}

void SharingTest::servicesAndRestartsShareTheStore() {
    auto one = m_world->service();
    auto other = m_world->service();
    QVERIFY(World::http(*one).hits("OSL-BKK").isEmpty());
    QCOMPARE(World::http(*other).report({World::find()}), 204);
    m_world->pass(1s);
    QCOMPARE(World::http(*one).hits("OSL-BKK"), QJsonArray{World::find()});
    one.reset();
    other.reset();
    one = m_world->service();
    QCOMPARE(World::http(*one).hits("OSL-BKK"), QJsonArray{World::find()});
}

void SharingTest::answersAreBoundedAndNewestFirst() {
    const auto service = m_world->service();
    const Http http = World::http(*service);
    QByteArrayList routes;
    for (int i = 0; i < 61; ++i) {
        const QString route = u"OSL-A"_s + QChar(u'A' + i / 26) + QChar(u'A' + i % 26);
        routes += route.toUtf8();
        QJsonArray finds;
        for (int flight = 0; flight < (i == 0 ? 200 : 50); ++flight)
            finds += World::find(route, u"SK%1"_s.arg(flight));
        m_world->pass(1ms);
        QCOMPARE(http.report(finds), 204);
    }
    const Http::Reply one = http.get("/v1/hits?routes=" + routes.first());
    QVERIFY(one.body.size() < 64 * 1024);
    QVERIFY(one.hits().size() > 100);
    QVERIFY(one.body.endsWith(R"("more":true})"));
    QVERIFY(!http.get("/v1/hits?routes=" + routes.at(1)).body.contains("more"));
    const Http::Reply all = http.get("/v1/hits?routes=" + routes.join(','));
    QVERIFY(all.body.size() > 900'000 && all.body.size() <= 1'000'000);
    QVERIFY(all.body.endsWith(R"("more":true})"));
    // The sixty-first is not looked at; of the others the newest come first.
    const auto routeOf = [&](qsizetype index) {
        return all.hits().at(index)[u"route"_s].toString().toUtf8();
    };
    QCOMPARE(routeOf(0), routes.at(59));
    QVERIFY(routeOf(all.hits().size() - 1) < routeOf(0));
}

void SharingTest::theStoreIsBounded() {
    community::Options options = m_world->options();
    options.limits.finds = 100;
    community::Service service(options);
    QVERIFY(!service.start());
    const Http http = World::http(service);
    for (int i = 0; i < (m_world->redis ? 1500 : 150); i += 50) {
        QJsonArray finds;
        for (int n = i; n < i + 50; ++n)
            finds += World::find(u"OSL-BKK"_s, u"SK%1"_s.arg(n));
        m_world->pass(1s);
        QCOMPARE(http.report(finds), 204);
    }
    if (m_world->redis) { // bounds each route; the rest is for its own maxmemory
        QCOMPARE(m_world->redis->ask("ZCARD tindra:{OSL-BKK}:finds"), ":1000\r\n");
    } else {
        QCOMPARE(Sqlite(m_world->file()).count(), 100);
        QCOMPARE(http.hits("OSL-BKK").last()[u"flight"_s].toString().left(3), u"SK5"_s);
    }
}

void SharingTest::aStoreThatIsGone() {
    community::Options options = m_world->options();
    std::mutex mutex;
    QByteArrayList lines;
    options.log = [&](const std::string& line) {
        const std::lock_guard lock(mutex);
        lines += QByteArray::fromStdString(line).left(25);
    };
    community::Service service(options);
    QVERIFY(!service.start());
    const Http http = World::http(service);
    QCOMPARE(http.report({World::find()}), 204);
    QCOMPARE(http.get("/healthz").status, 200);

    const Sqlite other(m_world->redis ? ":memory:" : m_world->file());
    if (m_world->redis)
        m_world->redis->stop();
    else
        QCOMPARE(other.run("BEGIN EXCLUSIVE"), SQLITE_OK);
    const Http::Reply refused = http.post("/v1/soldout", soldOut(World::find()));
    QCOMPARE(refused.status, 503);
    QCOMPARE(refused.error(), "The store does not answer.");
    QCOMPARE(refused.head.value("retry-after"), "10");
    // A locked file can still be read.
    QCOMPARE(http.get("/healthz").status, m_world->redis ? 503 : 200);
    QCOMPARE(http.get("/v1/hits?routes=OSL-BKK").status, m_world->redis ? 503 : 200);
    QCOMPARE(http.get("/nowhere").status, 404);

    if (m_world->redis)
        m_world->redis->start();
    else
        QCOMPARE(other.run("ROLLBACK"), SQLITE_OK);
    QCOMPARE(http.report({World::find(u"BGO-NYC"_s)}), 204);
    QCOMPARE(http.hits("BGO-NYC").size(), 1);

    // One that hangs instead.
    if (m_world->redis) {
        m_world->redis->hang();
        QCOMPARE(http.get("/v1/hits?routes=CPH-BKK").status, 503);
        QCOMPARE(http.get("/nowhere").status, 404);
        m_world->redis->goOn();
        QTRY_COMPARE(http.get("/v1/hits?routes=CPH-BKK").status, 200);
    }
    service.stop();
    QCOMPARE(lines.first(), "the store does not answer");
    QCOMPARE(lines.last(), "the store answers again");
}

TINDRA_TEST(SharingTest)
#include "test_sharing.moc"
