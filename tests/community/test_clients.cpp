// SPDX-License-Identifier: MIT
// Clients that stall, crowd or ask too much, and that others are served meanwhile.
#include "World.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <vector>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr const char* halfBody = "POST /v1/hits HTTP/1.1\r\nContent-Type: application/json\r\n"
                                 "Content-Length: 200000\r\n\r\n{";

} // namespace

class ClientsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stalledRequestsEnd_data();
    void stalledRequestsEnd();
    void aCrowdIsThinnedOut();
    void bodiesShareTheMemory();
    void requestsFollowOneAnother();
    void eachSenderHasABucket();
    void sendersAreToldApart_data();
    void sendersAreToldApart();

private:
    void serve(const std::function<void(community::Options&)>& change);

    World m_world{false};
    std::unique_ptr<community::Service> m_service;
    Http m_http{0};
};

void ClientsTest::serve(const std::function<void(community::Options&)>& change) {
    community::Options options = m_world.options();
    options.store = community::inSqlite(":memory:");
    change(options);
    m_service = std::make_unique<community::Service>(options);
    QVERIFY(!m_service->start());
    m_http.port = m_service->port();
}

void ClientsTest::stalledRequestsEnd_data() {
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<int>("status"); // 0: closed without a word
    QTest::newRow("nothing") << QByteArray() << 0;
    QTest::newRow("half a line") << QByteArray("GET /v1/hi") << 408;
    QTest::newRow("half a header") << QByteArray("GET /v1/hits HTTP/1.1\r\nHost: x\r\n") << 408;
    QTest::newRow("half a body") << QByteArray(halfBody) << 408;
    QTest::newRow("a kept connection") << QByteArray("GET /healthz HTTP/1.1\r\n\r\n") << 200;
}

void ClientsTest::stalledRequestsEnd() {
    QFETCH(QByteArray, sent);
    serve([](community::Options& options) {
        options.limits.request = 300ms;
        options.limits.idle = 300ms;
    });
    QElapsedTimer elapsed;
    elapsed.start();
    const auto socket = m_http.open(sent);
    if (!sent.isEmpty()) {
        QTEST(Http::next(*socket).status, "status");
    }
    // A dripping client gets no more time than a silent one.
    while (socket->state() == QTcpSocket::ConnectedState && !elapsed.hasExpired(5000)) {
        if (sent.endsWith('{') || sent.endsWith("x\r\n"))
            socket->write("x");
        socket->waitForReadyRead(50);
    }
    QVERIFY(elapsed.elapsed() >= 250 && elapsed.elapsed() < 5000);
}

void ClientsTest::aCrowdIsThinnedOut() {
    serve([](community::Options& options) { options.limits.connections = 20; });
    std::vector<std::unique_ptr<QTcpSocket>> crowd;
    for (int i = 0; i < 60; ++i)
        crowd.push_back(m_http.open("GET /v1/hi"));
    QCOMPARE(m_http.get("/healthz").status, 200);
    crowd.back()->write("ts?routes=OSL-BKK HTTP/1.1\r\n\r\n");
    QCOMPARE(Http::next(*crowd.back()).status, 200);
    QVERIFY(crowd.front()->waitForDisconnected(5000));
}

void ClientsTest::bodiesShareTheMemory() {
    serve([](community::Options& options) { options.limits.memory = 1'000'000; });
    std::vector<std::unique_ptr<QTcpSocket>> crowd;
    for (int i = 0; i < 20; ++i)
        crowd.push_back(m_http.open(halfBody));
    QCOMPARE(m_http.report({World::find()}), 204);
    QVERIFY(crowd.front()->waitForDisconnected(5000));
    QCOMPARE(crowd.back()->state(), QTcpSocket::ConnectedState);
}

void ClientsTest::requestsFollowOneAnother() {
    serve([](community::Options&) {});
    const auto socket = m_http.open(
        "POST /v1/soldout HTTP/1.1\r\nContent-Type: application/json; charset=utf-8\r\n"
        "Content-Length: 2\r\n\r\n{}GET /healthz HTTP/1.1\r\n\r\nGET /x HTTP/1.1\r\n\r\n"
        "POST /v1/hits HTTP/1.1\r\ncontent-type: Application/JSON\r\n"
        "Expect: 100-continue\r\nContent-Length: 11\r\n\r\n");
    for (const int status : {400, 200, 404, 100})
        QCOMPARE(Http::next(*socket).status, status);
    socket->write("{\"hits\":[]}GET /healthz HTTP/1.0\r\n\r\n");
    QCOMPARE(Http::next(*socket).status, 204);
    QCOMPARE(Http::next(*socket).head.value("connection"), "close");
    QVERIFY(socket->state() != QTcpSocket::ConnectedState || socket->waitForDisconnected(5000));
}

void ClientsTest::eachSenderHasABucket() {
    serve([](community::Options& options) { options.rateLimit = 0.5; }); // 30 at once
    QJsonArray finds;
    for (int i = 0; i < 100; ++i)
        finds += World::find(u"OSL-BKK"_s, u"SK%1"_s.arg(i));
    QCOMPARE(m_http.report({}), 204);
    m_world.pass(60min);                 // fills it, and no more
    QCOMPARE(m_http.report(finds), 204); // as much as 21 requests
    for (int i = 0; i < 9; ++i)
        QCOMPARE(m_http.get("/v1/hits?routes=OSL-BKK").status, 200);
    const Http::Reply refused = m_http.get("/v1/hits?routes=OSL-BKK");
    QCOMPARE(refused.status, 429);
    QCOMPARE(refused.head.value("retry-after"), "2");
    QCOMPARE(m_http.get("/healthz").status, 200);
    m_world.pass(2s);
    QCOMPARE(m_http.get("/v1/hits?routes=OSL-BKK").status, 200);
    QCOMPARE(m_http.report({World::find()}), 429);
}

void ClientsTest::sendersAreToldApart_data() {
    QTest::addColumn<bool>("isTrusted");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<bool>("isSame");
    const auto row = [](const char* name, const char* first, const char* second, bool isSame,
                        bool isTrusted = true) {
        QTest::newRow(name) << isTrusted << QByteArray(first) << QByteArray(second) << isSame;
    };
    row("no trust", "192.0.2.1", "192.0.2.2", true, false);
    row("two addresses", "192.0.2.1", "192.0.2.2", false);
    row("what a client wrote itself", "9.9.9.9, 192.0.2.1", "8.8.8.8,192.0.2.1", true);
    row("two proxies", "192.0.2.1, 10.0.0.1", "192.0.2.2, 10.0.0.1", false);
    row("one network", "2001:db8:1:2::1", "2001:db8:1:2:ffff::2", true);
    row("two networks", "2001:db8:1:2::1", "2001:db8:1:3::1", false);
    row("in IPv6's clothes", "::ffff:192.0.2.1", "192.0.2.1", true);
    row("nonsense", "<script>", "192.0.2.300", true);
}

void ClientsTest::sendersAreToldApart() {
    QFETCH(bool, isTrusted);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(bool, isSame);
    serve([&](community::Options& options) {
        options.rateLimit = 1.0 / 60; // one at once
        if (isTrusted)
            options.trustedProxies = {"127.0.0.1", "10.0.0.1"};
    });
    const auto ask = [&](const QByteArray& forwardedFor) {
        return m_http.get("/v1/hits?routes=OSL-BKK", "X-Forwarded-For: " + forwardedFor + "\r\n")
            .status;
    };
    QCOMPARE(ask(first), 200);
    QCOMPARE(ask(second), isSame ? 429 : 200);
}

TINDRA_TEST(ClientsTest)
#include "test_clients.moc"
