// SPDX-License-Identifier: MIT
#include "airline/OfferParser.h"
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
    return {{u"key"_s, f.key},
            {u"origin"_s, f.origin},
            {u"destination"_s, f.destination},
            {u"route"_s, f.route},
            {u"fromCity"_s, f.fromCity},
            {u"toCity"_s, f.toCity},
            {u"date"_s, f.date},
            {u"numberOfStops"_s, f.numberOfStops},
            {u"stops"_s, QJsonArray::fromStringList(f.stops)},
            {u"flight"_s, f.flight},
            {u"localDepart"_s, f.localDepart},
            {u"localArrive"_s, f.localArrive},
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

    OfferParser m_parser{Site{u"https://site.example"_s, {}, {}, {}}};

    std::optional<QList<Fare>> parse(const QString& name, const QByteArray& body) {
        return name.startsWith(u"award") ? m_parser.parseAwardOffers(body, u"osl"_s, u"xyz"_s)
                                         : m_parser.parseOffers(body, u"osl"_s, u"xyz"_s);
    }

private Q_SLOTS:
    void recordedResponses_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("ordinary") << u"ordinary"_s;
        QTest::newRow("award") << u"award"_s;
    }
    void recordedResponses() {
        QFETCH(QString, name);
        const auto fares = parse(name, read(name + u".in.json"_s));
        QVERIFY(fares);
        const QByteArray found = dump(*fares);
        const QByteArray expected = QJsonDocument::fromJson(read(name + u".out.json"_s)).toJson();
        if (found != expected) {
            const QList<QByteArray> lines = found.split('\n');
            const QList<QByteArray> wanted = expected.split('\n');
            for (qsizetype i = 0; i < std::max(lines.size(), wanted.size()); ++i) {
                if (lines.value(i) != wanted.value(i))
                    qWarning("line %lld\n  found    %s\n  expected %s", i + 1,
                             lines.value(i).constData(), wanted.value(i).constData());
            }
        }
        QCOMPARE(found, expected);
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
        QVERIFY(!m_parser.parseOffers(deep, u"OSL"_s, u"BKK"_s));
        const QByteArray frame = R"({"outboundFlights":{"a":{}},"x":"%"})";
        const auto padded = [&frame](qsizetype size) {
            return QByteArray(frame).replace("%", QByteArray(size - frame.size() + 1, 'x'));
        };
        QCOMPARE(m_parser.parseOffers(padded(largestBody), u"OSL"_s, u"BKK"_s)->size(), 1);
        QVERIFY(!m_parser.parseOffers(padded(largestBody + 1), u"OSL"_s, u"BKK"_s));
    }

    void aByteOrderMarkIsPassedOver() {
        QCOMPARE(
            m_parser
                .parseOffers("\xEF\xBB\xBF{\"outboundFlights\":{\"a\":{}}}", u"OSL"_s, u"BKK"_s)
                ->size(),
            1);
    }

    void onlyTheFlowsOwnShapeIsAnAnswer() {
        for (const QByteArray body :
             {"{}", R"({"outboundFlights":7})", R"({"outboundFlights":null})",
              R"({"outboundFlights":"none"})", R"({"errors":[{"code":"X"}]})"}) {
            QVERIFY(!m_parser.parseOffers(body, u"OSL"_s, u"BKK"_s));
            QVERIFY(!m_parser.parseAwardOffers(body, u"OSL"_s, u"BKK"_s));
        }
        const QByteArray map = R"({"outboundFlights":{}})";
        const QByteArray list = R"({"outboundFlights":[]})";
        QCOMPARE(m_parser.parseOffers(map, u"OSL"_s, u"BKK"_s), QList<Fare>());
        QCOMPARE(m_parser.parseAwardOffers(list, u"OSL"_s, u"BKK"_s), QList<Fare>());
        QVERIFY(!m_parser.parseOffers(list, u"OSL"_s, u"BKK"_s));
        QVERIFY(!m_parser.parseAwardOffers(map, u"OSL"_s, u"BKK"_s));
    }
};

TINDRA_TEST(TestOfferParser)
#include "test_offer_parser.moc"
