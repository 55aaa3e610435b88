// SPDX-License-Identifier: MIT
// What is taken and what is refused, and with which status.
#include "World.h"
#include "tests/support/TestProgram.h"

#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

class RequestsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fields();
    void bodies_data();
    void bodies();
    void http_data();
    void http();
    void oneFaultyFindRefusesAll();
    void localBookingsWhereTheyAreWanted();

private:
    World m_world{false};
    std::unique_ptr<community::Service> m_service = m_world.service();
    Http m_http = World::http(*m_service);
};

void RequestsTest::fields() {
    const auto report = [this](const char* field, const QJsonValue& value) {
        QJsonObject find = World::find();
        find.insert(QLatin1String(field), value);
        if (value.isUndefined())
            find.remove(QLatin1String(field));
        return m_http.post("/v1/hits",
                           QJsonDocument(QJsonObject{{u"hits"_s, QJsonArray{find}}}).toJson());
    };
    const QString text(121, u'x');
    const QString key = u"2027-03-01-OSL-BKK-"_s + text;
    using Fields = QList<std::pair<const char*, QJsonValue>>;
    for (const auto& [field, value] : Fields{{"key", key.first(120)},
                                             {"cabin", u"premeco"_s},
                                             {"fromCity", text.first(80)},
                                             {"arrive", u""_s},
                                             {"seats", 999},
                                             {"bookingUrl", u""_s},
                                             {"foundAt", 0}})
        QCOMPARE(report(field, value).status, 204);
    Fields wrong{{"key", QJsonValue::Undefined},
                 {"key", QJsonValue::Null},
                 {"key", u"2027-03-01-OSL-BKK-"_s},
                 {"key", u"2027-03-01-OSL-NYC-SK1"_s},
                 {"key", u"2027-03-02-OSL-BKK-SK1"_s},
                 {"key", key.first(121)},
                 {"cabin", u"Business"_s},
                 {"toCity", text.first(81)},
                 {"depart", u"a\nb"_s},
                 {"arrive", QString(QChar(0))},
                 {"stopsText", QJsonArray{}},
                 {"flight", QJsonObject{}},
                 {"durationMin", 10'001},
                 {"seats", u"2"_s},
                 {"seats", 0},
                 {"points", 0.5},
                 {"points", 1e300},
                 {"foundAt", -1},
                 {"foundAt", u"now"_s}};
    for (const auto& route : {u"osl-bkk"_s, u"OSLOBKK"_s, u"OSL-BK1"_s, u"ØL-BKK"_s, u"OSL-BKKX"_s})
        wrong.append({"route", route});
    for (const auto& date : {u"2027-02-30"_s, u"2027-3-001"_s, u"2027-01-13"_s, u"2028-02-20"_s})
        wrong.append({"travelDate", date});
    for (const auto& url :
         {u"http://www.sas.no/"_s, u"javascript:alert(1)"_s, u"https://"_s, u"//www.sas.no/"_s,
          u"https://a@www.sas.no/"_s, u"https://www.sas.no/ x"_s, u"http://site.localhost/"_s})
        wrong.append({"bookingUrl", url});
    for (const auto& [field, value] : std::as_const(wrong)) {
        const Http::Reply reply = report(field, value);
        QCOMPARE(reply.status, 400);
        QVERIFY2(reply.error().startsWith(QByteArray("hits[0]: \"") + field + '"'), reply.error());
    }
}

void RequestsTest::bodies_data() {
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    const auto row = [](const char* name, const QByteArray& target, const QByteArray& body,
                        int status = 400) { QTest::newRow(name) << target << body << status; };
    const QByteArray find = QJsonDocument(World::find()).toJson(QJsonDocument::Compact);
    const auto hits = [](const QByteArray& finds) { return R"({"hits":[)" + finds + "]}"; };
    row("no finds", "/v1/hits", hits({}), 204);
    row("200 finds", "/v1/hits", hits(QByteArrayList(200, find).join(',')), 204);
    row("201 finds", "/v1/hits", hits(QByteArrayList(201, find).join(',')));
    row("more members", "/v1/hits", R"({"a":[{}],"hits":[]})", 204);
    row("empty", "/v1/hits", "");
    row("cut off", "/v1/hits", hits(find).chopped(1));
    row("two values", "/v1/hits", hits(find) + hits(find));
    row("no UTF-8", "/v1/hits",
        hits(QByteArray(find).replace("Oslo", "\xff").replace("Troms", "\xff")));
    row("list", "/v1/hits", "[" + find + "]");
    row("null", "/v1/hits", R"({"hits":null})");
    row("null find", "/v1/hits", hits("null"));
    row("hits twice", "/v1/hits", R"({"hits":[],"hits":[]})");
    row("key twice", "/v1/hits", hits(R"({"key":"a",)" + find.mid(1)));
    row("deep", "/v1/hits", QByteArray(100'000, '['));
    row("deep, closed", "/v1/hits",
        R"({"hits":[],"a":)" + QByteArray(1000, '[') + QByteArray(1000, ']') + '}');
    const QByteArray key = R"({"key":"2027-03-01-OSL-BKK-SK1","cabin":)";
    row("sold out", "/v1/soldout", key + R"("first"})", 204);
    row("old sold out", "/v1/soldout", R"({"key":"2020-03-01-OSL-BKK-SK1","cabin":"first"})", 204);
    row("no cabin", "/v1/soldout", key.chopped(9) + '}');
    row("wrong cabin", "/v1/soldout", key + R"("all"})");
    row("cabin of another type", "/v1/soldout", key + "1}");
    row("wrong key", "/v1/soldout", R"({"key":"OSL-BKK","cabin":"first"})");
}

void RequestsTest::bodies() {
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, body);
    const Http::Reply reply = m_http.post(target, body);
    QTEST(reply.status, "status");
    QCOMPARE(reply.error().isEmpty(), reply.status == 204);
}

void RequestsTest::http_data() {
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("status");
    const auto row = [](const char* name, const QByteArray& request, int status) {
        QTest::newRow(name) << request.trimmed() + "\r\n\r\n" << status;
    };
    const QByteArray post = "POST /v1/hits HTTP/1.1\r\nContent-Type: application/json";
    row("no routes", "GET /v1/hits HTTP/1.1", 400);
    row("no valid route", "GET /v1/hits?routes=%00,%,%4,OSL-BKKK,oslbkk HTTP/1.1", 400);
    row("GET with a body", "GET /v1/hits?routes=OSL-BKK HTTP/1.1\r\nContent-Length: 3", 400);
    row("unknown path", "GET /v1/hitsandmore HTTP/1.1", 404);
    row("unknown path, POST", "POST / HTTP/1.1\r\nContent-Length: 3", 404);
    row("PUT", "PUT /v1/hits HTTP/1.1\r\nContent-Length: 3", 405);
    row("HEAD", "HEAD /healthz HTTP/1.1\r\nConnection: close", 405);
    row("GET soldout", "GET /v1/soldout HTTP/1.1", 405);
    row("part of a method", "ST /v1/soldout HTTP/1.1", 405);
    row("no length", post, 411);
    row("chunked", post + "\r\nTransfer-Encoding: chunked", 411);
    row("too long", post + "\r\nContent-Length: 262145", 413);
    row("absurdly long", post + "\r\nContent-Length: 99999999999999999999", 400);
    row("two lengths", post + "\r\nContent-Length: 1\r\nContent-Length: 2", 400);
    row("no type", "POST /v1/hits HTTP/1.1\r\nContent-Length: 3", 415);
    row("form", "POST /v1/hits HTTP/1.1\r\nContent-Type: text/json\r\nContent-Length: 3", 415);
    row("long header", "GET /healthz HTTP/1.1\r\nX: " + QByteArray(17'000, 'x'), 431);
    row("many headers", "GET /healthz HTTP/1.1\r\n" + QByteArray("A: b\r\n").repeated(3000), 431);
    row("long target", "GET /" + QByteArray(17'000, 'x') + " HTTP/1.1", 431);
    row("no HTTP", QByteArray("\x16\x03\x01\x02\x00", 5), 400);
    row("HTTP 0.9", "GET /healthz", 400);
}

void RequestsTest::http() {
    QFETCH(QByteArray, request);
    const Http::Reply reply = m_http.raw(request);
    QTEST(reply.status, "status");
    QCOMPARE(reply.head.contains("allow"), reply.status == 405);
    QVERIFY(!reply.error().isEmpty() || request.startsWith("HEAD"));
    QCOMPARE(m_http.get("/healthz").status, 200);
}

void RequestsTest::oneFaultyFindRefusesAll() {
    const QJsonObject good = World::find(u"CPH-LAX"_s);
    QJsonObject bad = good;
    bad.remove(u"flight"_s);
    QCOMPARE(m_http.report({good, bad}), 400);
    QVERIFY(m_http.hits("CPH-LAX").isEmpty());
}

void RequestsTest::localBookingsWhereTheyAreWanted() {
    community::Options options = m_world.options();
    options.takesLocalBookings = true;
    options.store = community::inSqlite(":memory:");
    community::Service service(options);
    QVERIFY(!service.start());
    QJsonObject find = World::find();
    for (const auto& [url, status] : {std::pair(u"http://site.localhost:8080/x"_s, 204),
                                      {u"http://127.0.0.1/"_s, 204},
                                      {u"https://www.sas.no/"_s, 204},
                                      {u"http://localhost.example/"_s, 400}}) {
        find[u"bookingUrl"_s] = url;
        QCOMPARE(World::http(service).report({find}), status);
    }
}

TINDRA_TEST(RequestsTest)
#include "test_requests.moc"
