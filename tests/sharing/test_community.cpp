// SPDX-License-Identifier: MIT
#include "core/Database.h"
#include "sharing/Community.h"
#include "sharing/CommunityFind.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/ManualClock.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// JSON written with single quotes.
QByteArray json(QByteArray text) {
    return text.replace('\'', '"');
}

const Route route{u"OSL"_s, u"EWR"_s};

FareKey fareKey(const QString& flights) {
    return {{2027, 3, 5}, route, flights};
}

Match offer(const QString& flight) {
    Match match;
    match.key = fareKey(flight);
    match.cabin = Cabin::business;
    match.seats = 2;
    match.foundAt = instantFromSeconds(1.5);
    return match;
}

} // namespace

class TestCommunity : public QObject {
    Q_OBJECT

    struct World {
        QTemporaryDir dir;
        ManualClock clock;
        Database database{dir.path(), clock};
        FakeHttpSession http;
        Community community{database.settings(), http, clock, Site{},
                            u"https://hunters.test/base"_s};

        World() {
            http.answer = [](const HttpRequest&) { return HttpResponse{200, "{\"hits\":[]}"}; };
        }
        QJsonObject body(qsizetype request) const {
            return QJsonDocument::fromJson(http.sent[request].body).object();
        }
        std::optional<FoundByOthers> ask() {
            return awaited(community.fetchHits({route})).value_or(std::nullopt);
        }
        QList<Match> fetch() { return ask().value_or(FoundByOthers{{offer(u"no answer"_s)}}).hits; }
        QList<Match> fetch(const QByteArray& answer, int status = 200) {
            http.answer = [=](const HttpRequest&) { return HttpResponse{status, answer}; };
            return fetch();
        }
        void callAll() {
            awaited(community.fetchHits({route}));
            awaited(community.report({offer(u"a"_s)}));
            awaited(community.reportSoldOut(fareKey(u"a"_s), {Cabin::business}));
        }
    };

private Q_SLOTS:
    void nothingIsSentWithoutConsentOrAddress_data() {
        QTest::addColumn<bool>("isSharing");
        QTest::addColumn<QString>("address");
        QTest::newRow("switched off") << false << u"https://hunters.test"_s;
        QTest::newRow("no address") << true << u"hunters and friends"_s;
        QTest::newRow("empty address") << true << QString(u""_s);
        QTest::newRow("another scheme") << true << u"file:///tmp/hits"_s;
        QTest::newRow("leads nowhere") << true << u"https://community.x.invalid"_s;
    }

    void nothingIsSentWithoutConsentOrAddress() {
        QFETCH(bool, isSharing);
        QFETCH(QString, address);
        World world;
        world.database.settings().set(Setting::shareHits, isSharing);
        world.database.settings().set(Setting::communityUrl, address);
        world.callAll();
        QVERIFY(world.http.sent.isEmpty());
    }

    void findsAreShared() {
        World world;
        awaited(world.community.report({}));
        // What the service would refuse, with all that comes with it.
        Match odd = offer(u""_s);
        awaited(world.community.report({odd}));
        odd = offer(u"a"_s);
        odd.seats = 0;
        awaited(world.community.report({odd}));
        QVERIFY(world.http.sent.isEmpty());
        awaited(world.community.report({offer(u"a"_s), odd, offer(u"b"_s)}));
        QCOMPARE(world.http.sent.size(), 1);
        QCOMPARE(world.http.sent[0].url.toString(), u"https://hunters.test/base/v1/hits"_s);
        QVERIFY(world.http.sent[0].method == HttpRequest::Method::post);
        const QJsonArray hits = world.body(0)[u"hits"].toArray();
        QCOMPARE(hits.size(), 2);
        QCOMPARE(hits[0].toObject().size(), 15);
        QCOMPARE(hits[0].toObject()[u"foundAt"].toDouble(), 1.5);
        // Who asked for it stays here.
        QVERIFY(!world.http.sent[0].body.contains("search"));

        QList<Match> many;
        for (int i = 0; i < 401; ++i)
            many.append(offer(QString::number(i)));
        awaited(world.community.report(many));
        QCOMPARE(world.http.sent.size(), 4);
        QCOMPARE(world.body(3)[u"hits"].toArray().size(), 1);
    }

    void soldOutCabinsAreToldOneByOne() {
        World world;
        world.database.settings().set(Setting::communityUrl, u"http://127.0.0.1:9/"_s);
        awaited(world.community.reportSoldOut(fareKey(u"k"_s), {Cabin::business, Cabin::premeco}));
        QCOMPARE(world.http.sent.size(), 2);
        QStringList cabins;
        for (qsizetype i = 0; i < 2; ++i) {
            QCOMPARE(world.http.sent[i].url.toString(), u"http://127.0.0.1:9/v1/soldout"_s);
            QCOMPARE(world.body(i).size(), 2);
            QCOMPARE(world.body(i)[u"key"].toString(), u"2027-03-05-OSL-EWR-k"_s);
            cabins.append(world.body(i)[u"cabin"].toString());
        }
        cabins.sort();
        QCOMPARE(cabins, QStringList({u"business"_s, u"premeco"_s}));
    }

    void onlyTheFirstSixtyRoutesAreAskedFor() {
        World world;
        QList<Route> routes;
        QStringList texts;
        for (int i = 0; i < 70; ++i) {
            routes.append({u"OSL"_s, QString::number(100 + i)});
            texts.append(routes.last().text());
        }
        awaited(world.community.fetchHits(routes));
        QCOMPARE(world.http.sent[0].url.query(), u"routes="_s + texts.first(60).join(u','));
        awaited(world.community.fetchHits({}));
        QCOMPARE(world.http.sent.size(), 1);
    }

    void whatAFindIsWithoutAMember() {
        World world;
        const auto find = [](const QByteArray& flights, const QByteArray& rest = "") {
            return json("{'key':'2027-03-05-OSL-EWR-" + flights +
                        "','cabin':'business','route':'OSL-EWR'" + rest + "}");
        };
        const QByteArrayList finds{
            json("{'cabin':'business','route':'OSL-EWR'}"),
            json("{'key':'k','route':'OSL-EWR'}"),
            json("{'key':'2027-03-05-OSL-EWR-k','cabin':'business'}"),
            json("{'key':1,'cabin':'business','route':'OSL-EWR'}"),
            find("k").replace("business", "sofa"),
            find("k").replace("\"OSL-EWR\"", "\"OSL-JFK\""),
            find("bare"),
            find("wrong", ",'seats':'2','points':1.5,'durationMin':-3,'fromCity':7,'toCity':null,"
                          "'depart':[],'arrive':{},'stopsText':true,'flight':1,"
                          "'travelDate':20270301,'bookingUrl':[],'foundAt':'now'"),
            find("huge", ",'seats':1e300,'points':99999999999,'travelDate':'zzzz',"
                         "'bookingUrl':'https://evil.example/','foundAt':1e300")};
        const auto found = world.fetch("{\"hits\":[" + finds.join(',') + "]}");
        QCOMPARE(found.size(), 3);
        for (const Match& match : found.first(2)) {
            Match expected;
            expected.key = match.key;
            expected.cabin = Cabin::business;
            expected.isCommunity = true;
            expected.id = match.id;
            QCOMPARE(match, expected);
        }
        QCOMPARE(found[2].bookingURL, QString());
        QCOMPARE(found[2].seats, 0);
        QCOMPARE(found[2].points, 0);
        // Nothing is found later than now, or it would be fresh for ever.
        QCOMPARE(found[2].foundAt, world.clock.now());
        QVERIFY(found[0].id != found[1].id);
    }

    void whatIsNoAnswerIsAbsent() {
        World world;
        const QByteArray good =
            json("{'hits':[{'key':'2027-03-05-OSL-EWR-k','cabin':'first','route':'OSL-EWR'}]}");
        const auto isAbsent = [&world](const std::optional<HttpResponse>& response) {
            world.http.answer = [&](const HttpRequest&) { return response; };
            return !world.ask();
        };
        for (const int status : {201, 500})
            QVERIFY(isAbsent(HttpResponse{status, good}));
        for (const QByteArray& answer :
             {QByteArray("<!doctype html><title>hi</title>"), good.chopped(2), QByteArray("[1]"),
              json("{'hits':{'key':'k'}}"), QByteArray(good.chopped(2) + ",7]}"),
              QByteArray(200'000, '[')})
            QVERIFY2(isAbsent(HttpResponse{200, answer}), answer.left(80));
        QVERIFY(isAbsent(std::nullopt));
        QVERIFY(!isAbsent(HttpResponse{200, good}));
        QVERIFY(!isAbsent(HttpResponse{200, "{\"hits\":[]}"}));
    }

    void textsAreCutAndPlain() {
        World world;
        const QByteArray longText(5000, 'x');
        const auto found = world.fetch(
            json("{'hits':[{'key':'2027-03-05-OSL-EWR-") + longText +
            json("','cabin':'business',") +
            json("'route':'OSL-EWR','fromCity':'Os\\u0000lo\\u202e\\n\\u001b[31m','toCity':'") +
            QByteArray(199, 'a') + "\xF0\x9F\x8D\x80" + json("'}]}"));
        QCOMPARE(found.size(), 1);
        QCOMPARE(found[0].key.text().size(), 200);
        QCOMPARE(found[0].fromCity, u"Oslo[31m"_s);
        QCOMPARE(found[0].toCity, QString(199, u'a'));
    }

    void onlyWhatMustHaveSoldOutIsGone() {
        const Instant now = instantFromSeconds(1'000'000);
        const auto stored = [&](const QString& flights, std::chrono::minutes ago = 5min) {
            Match match = offer(flights);
            match.searchId = Match::communitySearchId;
            match.isCommunity = true;
            match.foundAt = now - ago;
            return match;
        };
        Match own = stored(u"own"_s);
        own.searchId = 1;
        own.isCommunity = false;
        Match elsewhere = stored(u"else"_s, 1min);
        elsewhere.key.route = {u"A"_s, u"B"_s};
        const QList<Match> offers{stored(u"there"_s), stored(u"gone"_s),
                                  stored(u"expired"_s, 85min), own, elsewhere};
        QList<Hit> all{SoldOut{0, Match::communitySearchId, fareKey(u"record"_s), {}, {}, now}};
        QSet<OfferId> served;
        for (const Match& match : offers) {
            all.append(match);
            served.insert(match.offer());
        }
        const auto gone = [&](const QList<Match>& answer) {
            QStringList flights;
            for (const Match& match : CommunityFind::gone(all, answer, {route}, served, now))
                flights.append(match.key.flights);
            return flights;
        };
        QCOMPARE(gone({offer(u"there"_s)}), QStringList{u"gone"_s});
        QCOMPARE(gone({}), QStringList({u"there"_s, u"gone"_s}));
        // What the service never had in this run it cannot have lost.
        served.clear();
        QCOMPARE(gone({}), QStringList());
    }

    void aFloodOfFindsLetsOthersHaveTheirTurn() {
        World world;
        QByteArray answer = json("{'hits':[");
        for (int i = 0; i < 50'000; ++i)
            answer += json("{'key':'2027-03-05-A-B-") + QByteArray::number(i) +
                      json("','cabin':'first','route':'A-B'},");
        answer.back() = ']';
        answer += '}';
        world.http.answer = [&](const HttpRequest&) { return HttpResponse{200, answer}; };
        int turns = 0;
        QTimer pulse;
        connect(&pulse, &QTimer::timeout, [&turns] { ++turns; });
        pulse.start(0);
        QCOMPARE(world.fetch().size(), 5000);
        QVERIFY(turns > 20);
    }
};

TINDRA_TEST(TestCommunity)
#include "test_community.moc"
