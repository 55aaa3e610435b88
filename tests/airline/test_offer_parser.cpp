// SPDX-License-Identifier: MIT
#include "airline/OfferParser.h"
#include "core/DateFmt.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QByteArray read(const QString& name) {
    QFile file(QStringLiteral(TINDRA_TEST_DATA) + u"/offers/"_s + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    return file.readAll();
}

QJsonObject json(const CabinNumbers& numbers) {
    QJsonObject object;
    for (const Cabin cabin : allCabins) {
        if (const auto number = numbers[cabin])
            object.insert(rawValue(cabin), *number);
    }
    return object;
}

QJsonObject json(const Fare& f) {
    return {{u"key"_s, f.key.text()},
            {u"route"_s, f.key.route.text()},
            {u"fromCity"_s, f.fromCity},
            {u"toCity"_s, f.toCity},
            {u"date"_s, DateFmt::iso(f.key.date)},
            {u"numberOfStops"_s, f.stops.number},
            {u"stops"_s, QJsonArray::fromStringList(f.stops.codes)},
            {u"flight"_s, f.key.flights},
            {u"localDepart"_s, f.localDepart.text()},
            {u"localArrive"_s, f.localArrive.text()},
            {u"durationMinutes"_s, f.durationMinutes},
            {u"availability"_s, json(f.availability)},
            {u"saverPoints"_s, json(f.saverPoints)},
            {u"bookingURL"_s, f.bookingURL}};
}

/// Sorted by key, since the order of fares means nothing.
QByteArray dump(QList<Fare> fares) {
    std::sort(fares.begin(), fares.end(),
              [](const Fare& a, const Fare& b) { return a.key < b.key; });
    QJsonArray list;
    for (const Fare& fare : std::as_const(fares))
        list.append(json(fare));
    return QJsonDocument(list).toJson();
}

} // namespace

class TestOfferParser : public QObject {
    Q_OBJECT

    const Route route{u"OSL"_s, u"BKK"_s};
    OfferParser m_parser{Site{u"https://site.example"_s, {}, {}, {}}};

    std::optional<QList<Fare>> parse(const QString& name, const QByteArray& body) {
        return name.startsWith(u"award") ? m_parser.parseAwardOffers(body, {u"osl"_s, u"xyz"_s})
                                         : m_parser.parseOffers(body, {u"osl"_s, u"xyz"_s});
    }

private Q_SLOTS:
    void recordedResponses() {
        for (const QString& name : {u"ordinary"_s, u"award"_s}) {
            const auto fares = parse(name, read(name + u".in.json"_s));
            QVERIFY(fares);
            const auto found = dump(*fares).split('\n');
            const auto expected =
                QJsonDocument::fromJson(read(name + u".out.json"_s)).toJson().split('\n');
            for (qsizetype i = 0; i < std::max(found.size(), expected.size()); ++i)
                QCOMPARE(found.value(i), expected.value(i));
        }
    }

    void brokenResponsesAreNoData() {
        const QDir folder(QStringLiteral(TINDRA_TEST_DATA) + u"/offers"_s);
        const QStringList names = folder.entryList({u"*.broken.json"_s});
        QCOMPARE_GE(names.size(), 5);
        for (const QString& name : names)
            QVERIFY2(!parse(name, read(name)), qPrintable(name));
    }

    void extremesAreNoData() {
        const QByteArray deep = QByteArray(R"({"outboundFlights":)") + QByteArray(10000, '[') +
                                QByteArray(10000, ']') + '}';
        QVERIFY(!m_parser.parseOffers(deep, route));
        const QByteArray frame = R"({"outboundFlights":{"a":{}},"x":"%"})";
        const auto padded = [&frame](qsizetype size) {
            return QByteArray(frame).replace("%", QByteArray(size - frame.size() + 1, 'x'));
        };
        QCOMPARE(m_parser.parseOffers(padded(largestBody), route)->size(), 1);
        QVERIFY(!m_parser.parseOffers(padded(largestBody + 1), route));
    }

    void aByteOrderMarkIsPassedOver() {
        QCOMPARE(
            m_parser.parseOffers("\xEF\xBB\xBF{\"outboundFlights\":{\"a\":{}}}", route)->size(), 1);
    }

    void onlyTheFlowsOwnShapeIsAnAnswer() {
        for (const QByteArray body :
             {"{}", R"({"outboundFlights":7})", R"({"outboundFlights":null})",
              R"({"outboundFlights":"none"})", R"({"errors":[{"code":"X"}]})"}) {
            QVERIFY(!m_parser.parseOffers(body, route));
            QVERIFY(!m_parser.parseAwardOffers(body, route));
        }
        const QByteArray map = R"({"outboundFlights":{}})";
        const QByteArray list = R"({"outboundFlights":[]})";
        QCOMPARE(m_parser.parseOffers(map, route), QList<Fare>());
        QCOMPARE(m_parser.parseAwardOffers(list, route), QList<Fare>());
        QVERIFY(!m_parser.parseOffers(list, route));
        QVERIFY(!m_parser.parseAwardOffers(map, route));
    }
};

TINDRA_TEST(TestOfferParser)
#include "test_offer_parser.moc"
