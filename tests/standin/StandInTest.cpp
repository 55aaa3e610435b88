// SPDX-License-Identifier: MIT
#include "standin/StandIn.h"
#include "tests/support/TestProgram.h"

#include "Client.h"

#include <QElapsedTimer>
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
    void searchPagesCountAsLooks();
    void looksSurviveARestart();
    void slowAnswersAndThoseThatAreCutOff();
    void everySecondAnswerIsARefusal();
    void refusesOnceByItself();
    void misbehavesForNamedLegs();
    void badRequestsAreRefused();
    void stalledClientsDisturbNobody();
    void stopsAtOnce();
};

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

void StandInTest::slowAnswersAndThoseThatAreCutOff() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const auto asked = [&](const char* kind) {
        standIn.misbehave(leg, Misbehaviour::of(QLatin1String(kind)).value());
        return client.get(site, offers);
    };
    const Client::Reply good = asked("none");
    const auto asking = std::chrono::steady_clock::now();
    QCOMPARE(asked("slow:300").body, good.body);
    // What was sent is known from the socket, not from when it was made.
    const auto sent = [&] { return standIn.answeredAt(leg); };
    QTRY_VERIFY(sent() && *sent() >= asking + std::chrono::milliseconds(300));
    QVERIFY(*sent() <= std::chrono::steady_clock::now());
    const auto before = sent();
    const Client::Reply cut = asked("cutoff");
    QVERIFY(!cut.isComplete && good.body.startsWith(cut.body) && !cut.body.isEmpty());
    QVERIFY(sent() == before);
}

void StandInTest::everySecondAnswerIsARefusal() {
    const QStringList targets{offers, offers.chopped(1) + u'2', offers, award};
    const auto statuses = [&targets](const QString& pattern) {
        StandIn standIn({});
        QList<int> all;
        if (standIn.start())
            return all;
        standIn.misbehave(pattern, Misbehaviour::of(QStringLiteral("alternate")).value());
        for (const QString& target : targets)
            all.append(Client(standIn.port()).get(site, target).status);
        return all;
    };
    QCOMPARE(statuses(leg), QList<int>({200, 200, 429, 200}));
    QCOMPARE(statuses(QStringLiteral("*")), QList<int>({200, 429, 200, 429}));
}

void StandInTest::refusesOnceByItself() {
    for (const bool repeatsOnly : {false, true}) {
        std::atomic<qint64> now = 1'800'000'000;
        Options options;
        options.refusal = Refusal{.afterOffers = 3,
                                  .retryAfter = std::chrono::seconds(90),
                                  .countsRepeatsOnly = repeatsOnly};
        options.now = [&now] { return now.load(); };
        StandIn standIn(options);
        QVERIFY(!standIn.start());
        Client client(standIn.port());
        // Five legs in turn.
        int asked = 0;
        const auto ask = [&] {
            return client.get(site, offers.chopped(1) + QString::number(1 + asked++ % 5)).status;
        };
        while (asked < 20 && ask() == 200)
            continue;
        QCOMPARE(asked - 1, repeatsOnly ? 8 : 3);
        now += 89;
        for (const QString& target : {offers, award, offers + QStringLiteral("&calendar=1")}) {
            const Client::Reply refused = client.get(site, target);
            QCOMPARE(refused.status, 429);
            QCOMPARE(refused.head.value("retry-after"), QByteArray("90"));
        }
        QCOMPARE(client.get(site, searchPage).status, 200);
        QCOMPARE(standIn.counters().refused, 4);
        QCOMPARE(standIn.counters().offers, asked - 1);
        now += 1;
        for (int i = 0; i < 20; ++i)
            QCOMPARE(ask(), 200);
    }
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

TINDRA_TEST(StandInTest)
#include "StandInTest.moc"
