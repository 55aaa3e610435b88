// SPDX-License-Identifier: MIT
#include "standin/StandIn.h"
#include "tests/support/TestProgram.h"

#include "Client.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <atomic>

using namespace standin;

namespace {

const QString leg = QStringLiteral("OSL-BKK-20270301");
const QString awardPage =
    QStringLiteral("/booking/award/flights?origin=OSL&destination=BKK&outboundDate=2027-03-01");
const QString award =
    QStringLiteral("/award-api/flights?origin=OSL&destination=BKK&outboundDate=2027-03-01");

} // namespace

class StandInTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ordinaryOffers();
    void awardOffers();
    void paddedAnswersSayTheSame();
    void pagesAreCompleteAndSetCookies();
    void searchPagesCountAsLooks();
    void looksSurviveARestart();
    void misbehaves();
    void answersWithFaults_data();
    void answersWithFaults();
    void pagesWithFaults_data();
    void pagesWithFaults();
    void faultsThatComeAndGo_data();
    void faultsThatComeAndGo();
    void refusesOnceByItself_data();
    void refusesOnceByItself();
    void misbehavesForNamedLegs();
    void badRequestsAreRefused();
    void stalledClientsDisturbNobody();
    void stopsAtOnce();
    void answersOnBothLoopbacks();
};

void StandInTest::ordinaryOffers() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    const QJsonObject flights =
        Client(standIn.port()).get(site, offers).json()[u"outboundFlights"].toObject();
    QVERIFY(flights.size() >= 2);
    for (const QJsonValue& flight : flights) {
        QVERIFY(flight[u"startTimeInLocal"].toString().startsWith(u"2027-03-01T"));
        QVERIFY(!flight[u"endTimeInLocal"].toString().isEmpty());
        const QString gmt = flight[u"startTimeInGmt"].toString();
        QVERIFY(QDateTime::fromString(gmt, Qt::ISODateWithMs).isValid() && gmt.endsWith(u'Z'));
        QVERIFY(flight[u"endTimeInGmt"].toString() > gmt);
        QVERIFY(flight[u"connectionDuration"].toString().contains(u':'));
        const QJsonArray segments = flight[u"segments"].toArray();
        QCOMPARE(flight[u"stops"].toInt(-1), int(segments.size()) - 1);
        QCOMPARE(flight[u"origin"][u"code"].toString(), QStringLiteral("OSL"));
        QCOMPARE(flight[u"destinationCity"][u"name"].toString(), QStringLiteral("Bangkok"));
        for (const QJsonValue& segment : segments) {
            QCOMPARE(segment[u"marketingCarrier"][u"code"].toString(), QStringLiteral("SK"));
            QVERIFY(segment[u"flightNumber"].isString());
            QCOMPARE(segment[u"arrivalAirport"][u"code"].toString().size(), 3);
        }
        // Every cabin has products with seats that are not award seats.
        const QJsonObject cabins = flight[u"cabins"].toObject();
        QCOMPARE(cabins.keys(), (QStringList{QStringLiteral("BUSINESS"), QStringLiteral("ECONOMY"),
                                             QStringLiteral("PREMIUM")}));
        const QJsonValue product = cabins[u"ECONOMY"][u"GO"][u"products"][u"P_1"];
        QCOMPARE(product[u"productName"].toString(), QStringLiteral("GO"));
        QVERIFY(product[u"price"][u"points"].toInt() > 0);
        QVERIFY(product[u"fares"][0][u"avlSeats"].toInt() > 0);
    }
    // An unknown airport has a code and no city name.
    const QJsonObject unknown =
        Client(standIn.port())
            .get(site, QStringLiteral("/api/offers/flights?from=qqq&to=OSL&outDate=20270301"))
            .json()[u"outboundFlights"]
            .toObject();
    QCOMPARE(unknown.begin().value()[u"originCity"].toObject().keys(),
             QStringList{QStringLiteral("code")});
}

void StandInTest::awardOffers() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    int cabinsWithSeats = 0;
    bool hasPartner = false;
    for (int day = 1; day <= 9; ++day) {
        const QString target = award.chopped(1) + QString::number(day);
        const QJsonArray flights = client.get(site, target).json()[u"outboundFlights"].toArray();
        QVERIFY(flights.size() >= 3);
        for (const QJsonValue& flight : flights) {
            int seats = 0;
            const QJsonArray cabins = flight[u"cabins"].toArray();
            for (const QJsonValue& cabin : cabins) {
                seats += cabin[u"availableSeats"].toInt();
                QVERIFY(cabin[u"price"].toObject().begin().value()[u"amount"].toInt() >= 10'000);
                QVERIFY(cabin[u"fares"][0][u"avlSeats"].isDouble());
                ++cabinsWithSeats;
            }
            QCOMPARE(flight[u"lowestFares"].toArray().size(), cabins.size());
            QCOMPARE(flight[u"isSoldOut"].toBool(), seats == 0);
            QVERIFY(flight[u"startDateTimeInLocal"].toString() > u"2027-03-0");
            QVERIFY(flight[u"startDateTimeInGmt"].toString().endsWith(u".000Z"));
            hasPartner |= flight[u"segments"][0][u"marketingCarrier"][u"code"].toString() != u"SK";
        }
    }
    QVERIFY(cabinsWithSeats > 0 && hasPartner);
}

void StandInTest::paddedAnswersSayTheSame() {
    StandIn natural({});
    StandIn large({.responseBytes = 570'000});
    QVERIFY(!natural.start());
    QVERIFY(!large.start());
    for (const QString& target : {offers, award}) {
        QByteArray small = Client(natural.port()).get(site, target).body;
        QByteArray padded = Client(large.port()).get(site, target).body;
        QVERIFY(qAbs(padded.size() - 570'000) < 12'000);
        // Without the paragraphs it is the same text.
        static const QRegularExpression paragraphs(QStringLiteral("\"conditions\":\\[.*?\\],"));
        QCOMPARE(QString::fromUtf8(padded).remove(paragraphs), QString::fromUtf8(small));
    }
}

void StandInTest::pagesAreCompleteAndSetCookies() {
    StandIn standIn({.pageDelay = std::chrono::milliseconds(40)});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const Client::Reply search = client.get(site, searchPage);
    QVERIFY(search.body.contains("data-delay=\"40\""));
    QCOMPARE(client.jar[site].keys(), (QList<QByteArray>{"_gcl_au", "session", "visitor"}));
    QVERIFY(!client.get(site, awardPage).head.contains("set-cookie"));

    // Everything that the page names is there, on the host that it names.
    static const QRegularExpression link(
        QStringLiteral("(?:src|href)=\"(?:http://([a-z.]+):\\d+)?(/(?:assets/)?[a-z.]+2?)\""));
    auto found = link.globalMatch(QString::fromUtf8(search.body));
    int links = 0;
    while (found.hasNext()) {
        const auto match = found.next();
        const QString host = match.captured(1).isEmpty() ? site : match.captured(1);
        QCOMPARE(client.get(host, match.captured(2)).status, 200);
        ++links;
    }
    QCOMPARE(links, 4);
    QCOMPARE(client.get(site, QStringLiteral("/assets/sans.woff2")).status, 200);

    // The third party has a cookie of its own, and an answer that is not the airline's.
    const QString ads = StandIn::adsHost();
    QCOMPARE(client.get(ads, QStringLiteral("/frame.html")).status, 200);
    QCOMPARE(client.get(ads, QStringLiteral("/adframe.js")).status, 200);
    QCOMPARE(client.get(ads, QStringLiteral("/pixel.gif")).status, 200);
    QVERIFY(client.jar[ads].contains("MUID"));
    const QJsonObject lie = client.get(ads, offers).json()[u"outboundFlights"].toObject();
    QCOMPARE(lie[u"F_1"][u"segments"][0][u"marketingCarrier"][u"code"].toString(),
             QStringLiteral("XX"));
    QCOMPARE(standIn.requests(ads).last(), QStringLiteral("GET ") + offers);
}

void StandInTest::searchPagesCountAsLooks() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    client.get(site, searchPage);
    client.get(site, offers);
    client.get(site, offers);
    client.get(site, offers + QStringLiteral("&calendar=1"));
    QCOMPARE(standIn.looks(leg), 1);
    client.get(site, awardPage);
    QCOMPARE(standIn.looks(leg), 2);
    QCOMPARE(standIn.looks(QStringLiteral("OSL-BKK-20270302")), 0);
    QCOMPARE(standIn.counters().searchPages, 2);
    QCOMPARE(standIn.counters().offers, 2);
    QCOMPARE(standIn.counters().calendar, 1);

    // Over a number of legs the answers follow the looks.
    int changed = 0;
    for (int day = 10; day < 30; ++day) {
        const QString date = QStringLiteral("2027-03-%1").arg(day);
        const QString search = awardPage.chopped(10) + date;
        const QString request = award.chopped(10) + date;
        client.get(site, search);
        const QByteArray first = client.get(site, request).body;
        QCOMPARE(client.get(site, request).body, first);
        client.get(site, search);
        changed += client.get(site, request).body != first;
    }
    QVERIFY(changed > 5);
}

void StandInTest::looksSurviveARestart() {
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("looks.json"));
    for (int run = 1; run <= 2; ++run) {
        StandIn standIn({.stateFile = file});
        QVERIFY(!standIn.start());
        Client(standIn.port()).get(site, searchPage);
        QCOMPARE(standIn.looks(leg), run);
    }
    const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
    QVERIFY(!(QFile::permissions(file) & others));

    // A file of somebody else is refused and stays as it is.
    const QByteArray text = "[shopping, list]";
    QFile foreign(file);
    QVERIFY(foreign.open(QIODevice::WriteOnly | QIODevice::Truncate));
    foreign.write(text);
    foreign.close();
    StandIn standIn({.stateFile = file});
    const auto error = standIn.start();
    QVERIFY(error && error->contains(file));
    QVERIFY(foreign.open(QIODevice::ReadOnly));
    QCOMPARE(foreign.readAll(), text);
}

void StandInTest::misbehaves() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const auto asked = [&](const char* kind) {
        standIn.misbehave(leg, Misbehaviour::of(QLatin1String(kind)).value());
        return client.get(site, offers);
    };
    const Client::Reply good = asked("none");
    QVERIFY(good.isComplete && !good.json().isEmpty());

    QElapsedTimer elapsed;
    elapsed.start();
    const auto asking = std::chrono::steady_clock::now();
    QCOMPARE(asked("slow:300").body, good.body);
    QVERIFY(elapsed.elapsed() >= 300);
    // What was sent is known from the socket, not from when it was made.
    const auto sent = [&] { return standIn.answeredAt(leg); };
    QTRY_VERIFY(sent() && *sent() >= asking + std::chrono::milliseconds(300));
    QVERIFY(*sent() <= std::chrono::steady_clock::now());
    QVERIFY(!standIn.answeredAt(QStringLiteral("OSL-BKK-20270302")));

    const auto before = sent();
    const Client::Reply cut = asked("cutoff");
    QCOMPARE(cut.status, 200);
    QVERIFY(!cut.isComplete && good.body.startsWith(cut.body) && !cut.body.isEmpty());
    QVERIFY(sent() == before);
    const Client::Reply malformed = asked("malformed");
    QVERIFY(malformed.isComplete && malformed.json().isEmpty());
    const Client::Reply huge = asked("huge");
    QVERIFY(huge.isComplete && huge.body.size() > 17 * 1024 * 1024);
    QCOMPARE(huge.json()[u"outboundFlights"], good.json()[u"outboundFlights"]);
    QVERIFY(asked("nested").body.contains(QByteArray(10'000, '[') + QByteArray(10'000, ']')));
}

void StandInTest::answersWithFaults_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArrayList>("retryAfter");
    const auto row = [](const char* kind, int status, const char* part,
                        const QByteArrayList& retryAfter = {}) {
        QTest::newRow(kind) << QString::fromUtf8(kind) << status << QByteArray(part) << retryAfter;
    };
    row("status500", 500, "<html");
    row("errors", 200, R"({"errors":[{"code":")");
    row("message", 200, R"({"message":"Too many requests"})");
    row("wrongshape", 200, R"({"outboundFlights":"none"})");
    row("unauthorized", 401, "{");
    row("status:404", 404, "{");
    row("status:204", 204, "");
    row("status:429:60", 429, "{", {"60"});
    row("status:503:Wed, 21 Oct 2026 07:28:00 GMT", 503, "{", {"Wed, 21 Oct 2026 07:28:00 GMT"});
    row("status:429:om en stund, så=vel", 429, "{", {"om en stund, så=vel"});
    row("status:403:", 403, "{", {""});
}

void StandInTest::answersWithFaults() {
    QFETCH(QString, kind);
    QFETCH(QByteArray, part);
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    standIn.misbehave(leg, Misbehaviour::of(kind).value());
    for (const QString& target : {offers, award}) {
        const Client::Reply reply = client.get(site, target);
        QTEST(reply.status, "status");
        QVERIFY(reply.isComplete && reply.body.contains(part) && reply.body.size() < 500);
        QCOMPARE(reply.json().isEmpty(), !part.startsWith('{'));
        QTEST(QByteArrayList(reply.head.values("retry-after")), "retryAfter");
    }
    QVERIFY(client.get(site, searchPage).body.contains("search.js"));
}

void StandInTest::pagesWithFaults_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArrayList>("retryAfter");
    const auto row = [](const char* kind, int status, const char* part,
                        const QByteArrayList& retryAfter = {}) {
        QTest::newRow(kind) << QString::fromUtf8(kind) << status << QByteArray(part) << retryAfter;
    };
    row("signin", 200, "type=\"password\"");
    row("denied", 200, "<title>Access Denied</title>");
    row("page:403", 403, "<html");
    row("page:503:Wed, 21 Oct 2026 07:28:00 GMT", 503, "<html", {"Wed, 21 Oct 2026 07:28:00 GMT"});
    row("redirects", 302, "");
}

void StandInTest::pagesWithFaults() {
    QFETCH(QString, kind);
    QFETCH(QByteArray, part);
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    standIn.misbehave(leg, Misbehaviour::of(kind).value());
    for (const QString& target : {searchPage, awardPage}) {
        const Client::Reply reply = client.get(site, target);
        QTEST(reply.status, "status");
        QVERIFY(reply.isComplete && reply.body.contains(part) && !reply.body.contains("search.js"));
        QTEST(QByteArrayList(reply.head.values("retry-after")), "retryAfter");
        if (kind == u"redirects")
            QCOMPARE(reply.head.value("location"), (standIn.siteOrigin() + target).toUtf8());
    }
    QCOMPARE(standIn.looks(leg), 0);
    QVERIFY(!client.get(site, offers).json().isEmpty());
}

void StandInTest::faultsThatComeAndGo_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("pattern");
    // "p" loads the leg's page, "o" asks for its offers, "a" in the award flow, "n" for those of
    // the next day.
    QTest::addColumn<QByteArray>("asked");
    QTest::addColumn<QList<int>>("statuses");
    const auto every = QStringLiteral("*");
    QTest::newRow("twice") << QStringLiteral("twice") << leg << QByteArray("poooppoo")
                           << QList<int>{200, 500, 200, 200, 200, 200, 500, 200};
    QTest::newRow("twice, other legs") << QStringLiteral("twice") << every << QByteArray("ponona")
                                       << QList<int>{200, 500, 500, 200, 200, 200};
    QTest::newRow("alternate") << QStringLiteral("alternate") << leg << QByteArray("onoanpo")
                               << QList<int>{200, 200, 429, 200, 200, 200, 429};
    QTest::newRow("alternate, all legs")
        << QStringLiteral("alternate") << every << QByteArray("onoann")
        << QList<int>{200, 429, 200, 429, 200, 429};
}

void StandInTest::faultsThatComeAndGo() {
    QFETCH(QString, kind);
    QFETCH(QString, pattern);
    QFETCH(QByteArray, asked);
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    standIn.misbehave(pattern, Misbehaviour::of(kind).value());
    const QMap<char, QString> targets{
        {'p', searchPage}, {'o', offers}, {'a', award}, {'n', offers.chopped(1) + u'2'}};
    QList<int> statuses;
    for (const char what : asked) {
        const Client::Reply reply = client.get(site, targets[what]);
        statuses.append(reply.status);
        QCOMPARE(reply.head.value("retry-after"), QByteArray(reply.status == 429 ? "60" : ""));
        QCOMPARE(reply.json().contains(u"outboundFlights"), reply.status == 200 && what != 'p');
    }
    QTEST(statuses, "statuses");
}

void StandInTest::refusesOnceByItself_data() {
    QTest::addColumn<bool>("repeatsOnly");
    QTest::addColumn<int>("answered");
    QTest::newRow("offers") << false << 3;
    QTest::newRow("repeats") << true << 8;
}

void StandInTest::refusesOnceByItself() {
    QFETCH(bool, repeatsOnly);
    std::atomic<qint64> now = 1'800'000'000;
    Options options;
    options.refusal = Refusal{
        .afterOffers = 3, .retryAfter = std::chrono::seconds(90), .countsRepeatsOnly = repeatsOnly};
    options.now = [&now] { return now.load(); };
    StandIn standIn(options);
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    // Five legs in turn.
    int asked = 0;
    const auto ask = [&] {
        return client.get(site, offers.chopped(1) + QString::number(1 + asked++ % 5));
    };
    const QString calendar = offers + QStringLiteral("&calendar=1");
    Client::Reply reply;
    while (asked < 20 && (reply = ask()).status == 200)
        QCOMPARE(client.get(site, calendar).status, 200);
    QTEST(asked - 1, "answered");
    now += 89;
    for (const QString& target : {offers, award, calendar}) {
        const Client::Reply refused = client.get(site, target);
        QCOMPARE(refused.status, 429);
        QCOMPARE(refused.head.value("retry-after"), QByteArray("90"));
        QVERIFY(!refused.json().isEmpty());
    }
    QCOMPARE(client.get(site, searchPage).status, 200);
    QCOMPARE(standIn.counters().refused, 4);
    QCOMPARE(standIn.counters().offers, asked - 1);
    now += 1;
    for (int i = 0; i < 20; ++i)
        QCOMPARE(ask().status, 200);
}

void StandInTest::misbehavesForNamedLegs() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const QString other = offers.chopped(1) + u'2';
    standIn.misbehave(QStringLiteral("*"), {.kind = Misbehaviour::Kind::Error});
    standIn.misbehave(leg, {});
    QCOMPARE(client.get(site, offers).status, 200);
    QCOMPARE(client.get(site, other).status, 500);
    QCOMPARE(client.get(site, other + QStringLiteral("&calendar=1")).status, 200);

    for (const char* wrong :
         {"", "fast", "slow:", "slow:x", "never:3", "Slow", "status", "status:", "status:99",
          "status:600", "status: 42", "status:4290", "status:429:1\r\nX: 1", "page", "page:x",
          "errors:1", "unauthorized:60"})
        QVERIFY2(!Misbehaviour::of(QLatin1String(wrong)), wrong);
}

void StandInTest::badRequestsAreRefused() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    QVERIFY(client.raw("\x16\x03\x01 hello\r\n\r\n").startsWith("HTTP/1.1 400"));
    QVERIFY(client.raw("GET / HTTP/1.1\r\nX: " + QByteArray(60'000, 'a') + "\r\n\r\n")
                .startsWith("HTTP/1.1 431"));
    QVERIFY(
        client.raw("POST / HTTP/1.1\r\nContent-Length: 100000\r\n\r\n").startsWith("HTTP/1.1 413"));
    QVERIFY(
        client.raw("DELETE / HTTP/1.1\r\nConnection: close\r\n\r\n").startsWith("HTTP/1.1 405"));
    QCOMPARE(client.get(QStringLiteral("elsewhere.localhost"), searchPage).status, 404);
    QCOMPARE(client.get(site, QStringLiteral("/assets/../search.html")).status, 404);
    QCOMPARE(client.get(site, QStringLiteral("/api/offers/flights?from=OSL")).status, 400);
    QCOMPARE(client.get(site, QStringLiteral("/book/flights/?search=OW_OSL-BKK")).status, 400);
    QCOMPARE(client.get(site, offers).status, 200);
}

void StandInTest::stalledClientsDisturbNobody() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    standIn.misbehave(leg, {.kind = Misbehaviour::Kind::Never});
    const QString hanging = awardPage.chopped(1) + u'2';
    standIn.misbehave(QStringLiteral("OSL-BKK-20270302"), {.kind = Misbehaviour::Kind::Hang});
    const QByteArray rest = " HTTP/1.1\r\nHost: " + site.toLatin1() + "\r\n\r\n";
    const std::array requests{"GET " + offers.toLatin1() + rest, "GET " + hanging.toLatin1() + rest,
                              QByteArray("GET /slow")};
    std::vector<std::unique_ptr<QTcpSocket>> stalled;
    for (int i = 0; i < 60; ++i) {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QStringLiteral("127.0.0.1"), standIn.port());
        QVERIFY(socket->waitForConnected());
        socket->write(requests[i % requests.size()]);
        socket->waitForBytesWritten();
        stalled.push_back(std::move(socket));
    }
    QTRY_COMPARE(standIn.counters().offers, 20);
    QTRY_COMPARE(standIn.requests(site).filter(hanging).size(), 20);
    QElapsedTimer elapsed;
    elapsed.start();
    QCOMPARE(Client(standIn.port()).get(site, searchPage).status, 200);
    QVERIFY(elapsed.elapsed() < 2000);
    for (const auto& socket : stalled)
        QVERIFY(!socket->waitForReadyRead(0) && socket->state() == QTcpSocket::ConnectedState);

    // A client that gives up waiting does not take the server with it.
    stalled.clear();
    QCOMPARE(Client(standIn.port()).get(site, searchPage).status, 200);
}

void StandInTest::stopsAtOnce() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    standIn.misbehave(leg, {.kind = Misbehaviour::Kind::Slow, .delay = std::chrono::hours(1)});
    QTcpSocket idle;
    QTcpSocket waiting;
    for (QTcpSocket* socket : {&idle, &waiting}) {
        socket->connectToHost(QStringLiteral("127.0.0.1"), standIn.port());
        QVERIFY(socket->waitForConnected());
    }
    waiting.write("GET " + offers.toLatin1() + " HTTP/1.1\r\nHost: " + site.toLatin1() +
                  "\r\n\r\n");
    QVERIFY(waiting.waitForBytesWritten());
    QTRY_COMPARE(standIn.counters().offers, 1);

    QElapsedTimer elapsed;
    elapsed.start();
    standIn.stop();
    QVERIFY(elapsed.elapsed() < 1000);
    QVERIFY(idle.waitForDisconnected());
    QVERIFY(waiting.waitForDisconnected());
    QCOMPARE(standIn.counters().offers, 1);

    // The port is free again at once.
    StandIn next({.port = standIn.port()});
    QVERIFY(!next.start());
    StandIn late({.port = standIn.port()});
    const auto error = late.start();
    QVERIFY(error && error->contains(QString::number(standIn.port())));
}

void StandInTest::answersOnBothLoopbacks() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    const QByteArray request =
        "GET / HTTP/1.1\r\nHost: SITE.localhost\r\nConnection: close\r\n\r\n";
    Client client(standIn.port());
    QVERIFY(client.raw(request).startsWith("HTTP/1.1 200"));
    QTcpSocket probe;
    // The second loopback answers exactly where the machine has one.
    const bool hasIPv6 = probe.bind(QHostAddress(QHostAddress::LocalHostIPv6));
    QCOMPARE(client.raw(request, QStringLiteral("::1")).startsWith("HTTP/1.1 200"), hasIPv6);
}

TINDRA_TEST(StandInTest)
#include "StandInTest.moc"
