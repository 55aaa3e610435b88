// SPDX-License-Identifier: MIT
#include "airports/Airports.h"
#include "airports/Folding.h"
#include "tests/support/TestProgram.h"

#include <QTest>

#include <algorithm>

using namespace Airports;

namespace {

QStringList codes(const QList<Airport>& airports) {
    QStringList result;
    for (const Airport& airport : airports)
        result.append(airport.code);
    return result;
}

/// The rule of `search` without its index, to compare with.
QStringList searchedOneByOne(const QString& wanted) {
    static const QList<Airport> foldedRows = [] {
        QList<Airport> rows;
        for (const Airport& airport : all())
            rows.append({folded(airport.code), folded(airport.city)});
        return rows;
    }();
    QList<QStringList> buckets(4);
    for (const auto& [code, city] : foldedRows) {
        if (code == wanted)
            buckets[0].append(code.toUpper());
        else if (city.startsWith(wanted))
            buckets[1].append(code.toUpper());
        else if (code.startsWith(wanted))
            buckets[2].append(code.toUpper());
        else if (city.contains(wanted))
            buckets[3].append(code.toUpper());
    }
    return buckets[0] + buckets[1] + buckets[2] + buckets[3];
}

} // namespace

class AirportsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tablesAreWholeAndInOrder() {
        QCOMPARE(kuraterte().size(), 110);
        QCOMPARE(kuraterte().first(), (Airport{QStringLiteral("OSL"), QStringLiteral("Oslo")}));
        QCOMPARE(kuraterte().last(), (Airport{QStringLiteral("MEL"), QStringLiteral("Melbourne")}));
        QCOMPARE(all(), kuraterte() + genererte());

        const QStringList generated = codes(genererte());
        QCOMPARE(generated.size(), 1536);
        QVERIFY(std::is_sorted(generated.cbegin(), generated.cend()));
        const QStringList marks{generated[0],   generated[399],  generated[400],  generated[799],
                                generated[800], generated[1199], generated[1200], generated[1535]};
        QCOMPARE(marks.join(u' '), QStringLiteral("AAR EZS FAI LWS LXA SKD SKG ZYI"));

        QCOMPARE(byCode().size(), 1646); // so no code is there twice
        for (const Airport& airport : all()) {
            QCOMPARE(airport.code.size(), 3);
            QCOMPARE(airport.code, airport.code.toUpper());
            QCOMPARE(airport.city, airport.city.trimmed());
            QVERIFY2(!airport.city.isEmpty(), qPrintable(airport.code));
        }
        QCOMPARE(byCode().value(QStringLiteral("AAR")).city, QStringLiteral("Århus"));

        QCOMPARE(englishNames().size(), 18);
        for (auto name = englishNames().cbegin(); name != englishNames().cend(); ++name) {
            QCOMPARE(name->size(), 1);
            QVERIFY(byCode().contains(name.key()));
        }
    }

    void regionsDivideTheCatalogue() {
        const QList<std::pair<Region, int>> sizes{{Region::usa, 328},    {Region::latam, 229},
                                                  {Region::asia, 457},   {Region::middleEast, 42},
                                                  {Region::africa, 117}, {Region::oceania, 34},
                                                  {Region::europe, 438}};
        QSet<QString> seen;
        QCOMPARE(regionSets().size(), sizes.size());
        for (qsizetype i = 0; i < sizes.size(); ++i) {
            const auto& [name, members] = regionSets()[i];
            QCOMPARE(name, sizes[i].first);
            QCOMPARE(members.size(), sizes[i].second);
            QVERIFY(!seen.intersects(members));
            seen += members;
        }
        const QStringList known = byCode().keys();
        QCOMPARE(QSet<QString>(known.cbegin(), known.cend()) - seen,
                 QSet<QString>{QStringLiteral("PBM")});
        QCOMPARE(seen.size(), 1645);

        QCOMPARE(region(QStringLiteral("jfk")), Region::usa);
        QCOMPARE(region(QStringLiteral("OSL")), Region::europe);
        QCOMPARE(region(QStringLiteral("PBM")), Region::other);
        QCOMPARE(region(QStringLiteral("XYZ")), Region::other);
        QCOMPARE(region(QString()), Region::other);
    }

    void regionsHaveRawValuesAndLabels() {
        QSet<QString> labels;
        for (int raw = 0; raw < 8; ++raw) {
            QCOMPARE(regionFromRaw(raw), allRegions.at(static_cast<size_t>(raw)));
            labels.insert(label(*regionFromRaw(raw)));
        }
        QCOMPARE(labels.size(), 8);
        QVERIFY(!regionFromRaw(-1));
        QVERIFY(!regionFromRaw(8));
    }

    void metroAreas() {
        for (const auto& [airports, name] : {std::pair("JFK,EWR,LGA", "New York"),
                                             {"HND,NRT", "Tokyo"},
                                             {"SFO,OAK,SJC", "San Francisco"},
                                             {"LHR,lgw,LCY,STN,LTN", "London"},
                                             {"CDG,ORY", "Paris"},
                                             {"ORD,MDW", "Chicago"},
                                             {"PEK,PKX", "Beijing"},
                                             {"BKK,DMK", "Bangkok"},
                                             {"MXP,LIN,BGY", "Milano"},
                                             {"BGO,bgo", "Bergen"},
                                             {"xyz,XYZ", "XYZ"}}) {
            for (const QString& code : QString::fromLatin1(airports).split(u','))
                QCOMPARE(metro(code), QString::fromLatin1(name));
        }
    }

    void cityConsistency() {
        const auto isConsistent = [](const char* code, const char* city) {
            return cityConsistent(QString::fromLatin1(code), QString::fromUtf8(city));
        };
        for (const char* city :
             {"Copenhagen", "København", "KOBENHAVN", "Copenhagen Kastrup", "havn", "cph", ""})
            QVERIFY2(isConsistent("cph", city), city);
        for (const char* city : {"Oslo", "OSL"})
            QVERIFY2(!isConsistent("CPH", city), city);
        QVERIFY(isConsistent("XYZ", "Oslo"));
        QVERIFY(isConsistent("EWR", "New York"));
        QVERIFY(!isConsistent("TOS", "Copenhagen"));
    }

    void folding() {
        for (const auto& [text, plain] : {
                 std::pair(u"TROMSØ Ålesund Færøyene Đà Nẵng", u"tromso alesund faeroyene da nang"),
                 {u"Göteborg Málaga Curaçao Gdańsk", u"goteborg malaga curacao gdansk"},
                 {u"Łódź Gießen GROẞ", u"lodz giessen gross"},
                 {u"İzmir Iğdır", u"izmir igdir"},
                 {u"Go\u0308teborg a\u0330\u0301", u"goteborg a"},
                 {u"\U00010400\U0001D165", u"\U00010428"},
                 {u"½東", u"½東"},
             })
            QCOMPARE(folded(QString::fromUtf16(text)), QString::fromUtf16(plain));
        const QString halfAPair(QChar(0xd800));
        QCOMPARE(folded(halfAPair), halfAPair);
    }

    void everyCityFoldsToPlainLetters() {
        for (const Airport& airport : all()) {
            for (const QChar unit : folded(airport.city)) {
                const bool plain = unit.unicode() < 0x80 && !unit.isUpper();
                QVERIFY2(plain || unit == u'’', qPrintable(airport.city));
            }
        }
    }

    void searchPutsTheBestFirst() {
        QCOMPARE(search(QStringLiteral("osl"), 6).first().code, QStringLiteral("OSL"));
        // Cities that begin with the text, curated before generated; then codes that do (Orsk,
        // Namsos); then cities that contain it (Boston).
        QCOMPARE(codes(search(QStringLiteral("os"), 100)).mid(0, 8).join(u' '),
                 QStringLiteral("OSL ITM KIX OSD OSS OSW OSY BOS"));
        QCOMPARE(codes(search(QStringLiteral("BERG"), 6)),
                 (QStringList{QStringLiteral("BGO"), QStringLiteral("NUE")}));
        QCOMPARE(search(QStringLiteral("tromso"), 6).first().city, QStringLiteral("Tromsø"));
        QCOMPARE(codes(search(QStringLiteral("san"), 1)), QStringList{QStringLiteral("SAN")});
        // English names are not searched.
        QVERIFY(search(QStringLiteral("copenhagen"), 6).isEmpty());
    }

    void searchIsTheSameAsLookingOneByOne() {
        QStringList queries;
        for (char16_t first = u'a'; first <= u'z'; ++first) {
            for (char16_t second = u'a'; second <= u'z'; ++second)
                queries.append(QString(QChar(first)) + QChar(second));
        }
        for (qsizetype i = 0; i < all().size(); i += 5) {
            const Airport& airport = all()[i];
            queries << airport.code << airport.city << airport.city.mid(1, 4);
        }
        for (const QString& query : std::as_const(queries)) {
            const QStringList expected = searchedOneByOne(folded(query));
            QCOMPARE(codes(search(query, 2000)), expected);
            QCOMPARE(codes(search(query, 6)), expected.mid(0, 6));
        }
    }

    void searchWithNothingToFind() {
        const QStringList queries{QString(),
                                  QStringLiteral("o"),
                                  QStringLiteral("o\u0301\u0302"), // one character when folded
                                  QString(QStringLiteral("oslo")) + QChar(u'\0') +
                                      QStringLiteral("bergen"),
                                  QString(5000, u'a'),
                                  QString(5000, QChar(0x301)),
                                  QString(5000, QChar(0xd800))};
        for (const QString& query : queries)
            QVERIFY(search(query, 6).isEmpty());
        QVERIFY(search(QStringLiteral("oslo"), 0).isEmpty());
        QVERIFY(search(QStringLiteral("oslo"), -1).isEmpty());
        // Marks do not count towards the length that ends the reading.
        QCOMPARE(search(QStringLiteral("OS") + QString(5000, QChar(0x301)) + u'L', 1).first().code,
                 QStringLiteral("OSL"));
    }
};

TINDRA_TEST(AirportsTest)
#include "test_airports.moc"
