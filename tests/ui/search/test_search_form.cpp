// SPDX-License-Identifier: MIT
#include "tests/support/AppWorld.h"
#include "tests/support/TestProgram.h"
#include "ui/search/BoardingPassSearchCard.h"
#include "ui/search/CodeList.h"
#include "ui/search/DateText.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The form's rules, without a window.
class TestSearchForm : public QObject {
    Q_OBJECT

    const QDate today{2027, 1, 15};

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "America/Los_Angeles"); }

    void suggestionsAreForThePieceBeingTyped() {
        const auto first = [](const QString& text, bool multi = true) {
            const auto found = CodeList::suggestions(CodeList::activeToken(text, multi));
            return found.size() <= 6 ? found.value(0).code : u"too many"_s;
        };
        QCOMPARE(first(u"bergen"_s), u"BGO"_s);
        QCOMPARE(first(u"OSL,\tberge "_s), u"BGO"_s);
        QCOMPARE(first(u"OSL, berge"_s, false), u""_s);
        // One letter, a whole code, nothing behind the comma, and nowhere.
        for (const QString& text : {u""_s, u"O"_s, u"oSl"_s, u"berge,"_s, u"قلعة"_s})
            QCOMPARE(first(text), u""_s);
    }

    void picksReplaceTheLastPiece() {
        QCOMPARE(CodeList::picked(u"OSL, BG"_s, u"BGO"_s, true), u"OSL, BGO"_s);
        QCOMPARE(CodeList::picked(u"JFK, ewr,\tNR"_s, u"NRT"_s, true), u"JFK, ewr, NRT"_s);
        QCOMPARE(CodeList::picked(u""_s, u"NRT"_s, true), u"NRT"_s);
        QCOMPARE(CodeList::picked(u"OSL, BG"_s, u"BGO"_s, false), u"BGO"_s);
    }

    void codesAreReadForWhatTheyAre() {
        QCOMPARE(CodeList::cityNames(u" osl,,XQX, BGO "_s), u"Oslo · Bergen"_s);
        QCOMPARE(CodeList::cityNames(u"XQX"_s), QString());
    }

    void swappingKeepsTheOtherDestinations() {
        const auto swapped = [](const QString& origin, const QString& destination) {
            const auto ends = CodeList::swapped({origin, destination});
            return ends.origin + u'|' + ends.destination;
        };
        QCOMPARE(swapped(u"OSL"_s, u"JFK, EWR"_s), u"JFK|OSL, EWR"_s);
        QCOMPARE(swapped(u"OSL, BGO"_s, u"JFK"_s), u"JFK|OSL, BGO"_s);
        QCOMPARE(swapped(u"OSL"_s, u", "_s), u"|OSL"_s);
    }

    void windowsNameTheirLastYear() {
        QCOMPARE(DateText::window({2026, 3, 7}, {2026, 5, 6}), u"7. mar. – 6. mai 2026"_s);
        QCOMPARE(DateText::window({2027, 12, 30}, {2028, 2, 29}), u"30. des. – 29. feb. 2028"_s);
    }

    void typedDatesAreRead() {
        for (const auto& [text, date] : {std::pair(u" 07.03.2028 "_s, QDate(2028, 3, 7)),
                                         {u"7. 3. 28"_s, {2028, 3, 7}},
                                         {u"2028-03-07"_s, {2028, 3, 7}},
                                         {u"15/1"_s, today},
                                         {u"14.1."_s, {2028, 1, 14}},
                                         {u"29.2"_s, {2028, 2, 29}},
                                         {u"29.02.2027"_s, {}},
                                         {u"31.4"_s, {}},
                                         {u"i morgen"_s, {}}})
            QCOMPARE(DateText::parse(text, today).value_or(QDate()), date);
    }

    void suggestionsOpenAndClose() {
        AirportField field(AirportField::Field::to);
        const QAbstractItemModelTester tester(
            field.suggestions(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        field.setCode(u"JFK, lon"_s);
        QVERIFY(!field.isOpen());
        field.setFocused(true);
        QVERIFY(field.isOpen());
        const int rows = field.suggestions()->rowCount();
        QVERIFY(rows > 1);
        QCOMPARE(field.highlighted(), 0);
        QVERIFY(field.moveHighlight(-1));
        QCOMPARE(field.highlighted(), rows - 1);
        QVERIFY(field.moveHighlight(2));
        QCOMPARE(field.highlighted(), 1);

        QVERIFY(field.dismiss());
        QVERIFY(!field.dismiss() && !field.chooseHighlighted());
        QVERIFY(field.moveHighlight(1) && field.isOpen());
        field.dismiss();
        field.setCode(u"JFK, berge"_s);
        QVERIFY(field.chooseHighlighted());
        QCOMPARE(field.code(), u"JFK, BGO"_s);
        QVERIFY(!field.isOpen() && field.isFocused() && !field.moveHighlight(1));

        AirportField single(AirportField::Field::from, false);
        single.setFocused(true);
        single.setCode(u"berge"_s);
        single.pick(u"BGO"_s);
        QCOMPARE(single.code(), u"BGO"_s);
        QVERIFY(!single.isFocused());
    }

    void windowsKeepTheirOrder() {
        const ManualClock clock(today);
        DateWindowField field(u"AVREISE-VINDU"_s, clock);
        QCOMPARE(field.from(), QDate(2027, 1, 16));
        QCOMPARE(field.to(), QDate(2027, 3, 16));
        QSignalSpy changes(&field, &DateWindowField::windowChanged);

        field.setOpen(true);
        field.typeTo(u"15.1.2027"_s);
        QCOMPARE(field.problem(), u"Til kan ikke være før Fra."_s);
        field.typeFrom(u"14.1.2027"_s);
        QCOMPARE(field.problem(), u"14.01.2027 har vært."_s);
        field.typeFrom(u"snart"_s);
        QCOMPARE(field.problem(), u"Skriv datoen som 31.12.2027."_s);
        QVERIFY(changes.isEmpty());
        field.typeFrom(u"20.12"_s);
        QCOMPARE(field.text(), u"20. des. – 20. des. 2027"_s);
        QCOMPARE(field.problem(), QString());

        field.calendar()->pick(field.calendar()->rowCount() - 1);
        QVERIFY(field.isOpen());
        field.calendar()->pick(field.calendar()->rowCount() - 1);
        QVERIFY(!field.isOpen());
        QVERIFY(field.from() < field.to());

        field.setWindow({2026, 5, 2}, {2026, 5, 1});
        QCOMPARE(field.text(), u"2. mai – 2. mai 2026"_s);
        field.setWindow({}, today);
        QCOMPARE(field.to(), QDate(2026, 5, 2));
    }

    void standardWindowsFollowTheDay() {
        AppWorld world;
        BoardingPassSearchCard form(world.state, world.clock);
        form.homebound()->setWindow({2027, 2, 1}, {2027, 2, 20});
        form.outbound()->setOpen(true);
        world.clock.advance(24h * 3);
        QCOMPARE(form.outbound()->text(), u"19. jan. – 19. mar. 2027"_s);
        QCOMPARE(form.outbound()->calendar()->from(), QDate(2027, 1, 19));
        QVERIFY(!form.outboundTouched());
        QCOMPARE(form.homebound()->text(), u"1. feb. – 20. feb. 2027"_s);
        // One that the user has picked is theirs, also when it is the standard.
        Q_EMIT form.outbound()->calendar()->windowPicked({2027, 1, 19}, {2027, 3, 19});
        world.clock.advance(24h);
        QCOMPARE(form.outbound()->from(), QDate(2027, 1, 19));
    }

    void windowsThatHavePassedAreNotSearched() {
        for (const bool isOut : {true, false}) {
            AppWorld world;
            world.airline.answer = [](auto&&...) {
                return std::optional<QByteArray>(R"({"outboundFlights":{}})");
            };
            BoardingPassSearchCard form(world.state, world.clock);
            form.destination()->setCode(u"JFK"_s);
            DateWindowField* past = isOut ? form.outbound() : form.homebound();
            DateWindowField* other = isOut ? form.homebound() : form.outbound();
            past->setWindow({2027, 1, 20}, {2027, 1, 25});
            other->setWindow({2027, 2, 1}, {2027, 2, 5});
            world.clock.advance(24h * 11);
            QVERIFY(!form.windowWarning());
            for (int press = 0; press < 2; ++press) {
                form.submit();
                QVERIFY(form.windowWarning() && world.database.watchers().listSearches().isEmpty());
            }
            QCOMPARE(form.warningText(),
                     u"⚠ %1-vinduet (20. jan. – 25. jan. 2027) har vært. Velg nye datoer."_s.arg(
                         isOut ? u"Utreise"_s : u"Hjemreise"_s));
            QCOMPARE(form.caption(), u"Søk når datoene er nye"_s);
            QCOMPARE(form.offerText(), u"Bruk 27. jan. – 27. mar. 2027 i stedet"_s);
            past->setWindow({2027, 1, 20}, {2027, 1, 26});
            QVERIFY(!form.windowWarning());
            past->setWindow({2027, 1, 20}, {2027, 1, 25});
            form.submit();
            form.takeOffer();
            QCOMPARE(world.database.watchers().listSearches().size(), 1);
            const Search stored = world.database.watchers().listSearches().constFirst();
            QCOMPARE(isOut ? stored.dateFrom : stored.returnDateFrom, QDate(2027, 1, 27));
            QCOMPARE(isOut ? stored.dateTo : stored.returnDateTo, QDate(2027, 3, 27));
            QCOMPARE(isOut ? stored.returnDateTo : stored.dateTo, QDate(2027, 2, 5));
            QVERIFY(!form.windowWarning());
        }
    }

    void anyCabinsCanBeChosen() {
        CabinChips chips({Cabin::business, Cabin::first});
        const QAbstractItemModelTester tester(
            &chips, QAbstractItemModelTester::FailureReportingMode::QtTest);
        chips.toggle(1);
        chips.toggle(2);
        QCOMPARE(encodeCabins(chips.cabins()), u"first,premeco"_s);
    }

    void searchingStoresAWatcherAndStartsARound() {
        AppWorld world;
        world.airline.status = SASLoginStatus{};
        world.airline.answer = [](auto&&...) {
            return std::optional<QByteArray>(R"({"outboundFlights":{}})");
        };
        BoardingPassSearchCard form(world.state, world.clock);
        QVERIFY(!form.canSearch());
        form.submit();
        QVERIFY(world.database.watchers().listSearches().isEmpty());

        form.origin()->setCode(u"osl, bgo"_s);
        form.destination()->setCode(u"jfk"_s);
        form.setName(u" Jul "_s);
        form.setMinSeats(20);
        form.setMaxStops(-1);
        form.cabins()->setCabins({});
        form.setRoundTrip(false);
        form.submit();
        Search expected;
        expected.id = 1;
        expected.name = u" Jul "_s;
        expected.origin = u"OSL,BGO"_s;
        expected.destination = u"JFK"_s;
        expected.minSeats = 9;
        expected.maxStops = 0;
        expected.dateFrom = QDate(2027, 1, 16);
        expected.dateTo = QDate(2027, 3, 16);
        expected.includePartners = true;
        QCOMPARE(world.database.watchers().listSearches().size(), 1);
        QVERIFY(world.database.watchers().listSearches().constFirst() == expected);
        QVERIFY(world.worker.isRunning());
        QCOMPARE(form.origin()->code(), u"osl, bgo"_s);
        QVERIFY(form.destination()->code().isEmpty() && form.name().isEmpty());
    }

    void presetsFillTheForm() {
        AppWorld world;
        BoardingPassSearchCard form(world.state, world.clock);
        form.setRoundTrip(false);
        form.cabins()->setCabins({Cabin::economy});
        form.usePreset(1);
        QCOMPARE(form.presetLabels().at(1), u"🌏 Asia i business"_s);
        QCOMPARE(form.name(), u"Asia i business"_s);
        QCOMPARE(form.origin()->code(), u"CPH"_s);
        QCOMPARE(form.destination()->code(), u"BKK, HND, NRT, SIN, PVG"_s);
        QVERIFY(form.roundTrip() && form.cabins()->cabins() == WatcherForm::usualCabins);
    }

    void aReturnWindowAloneIsWarnedOf() {
        // To press again, to take the offer, or to choose one's own.
        for (const auto& [then, from] : {std::pair(u"again"_s, QDate(2027, 1, 16)),
                                         {u"offer"_s, {2027, 6, 1}},
                                         {u"own"_s, {2027, 5, 1}}}) {
            AppWorld world;
            world.airline.answer = [](auto&&...) {
                return std::optional<QByteArray>(R"({"outboundFlights":{}})");
            };
            BoardingPassSearchCard form(world.state, world.clock);
            form.destination()->setCode(u"JFK"_s);
            form.homebound()->setWindow({2027, 6, 1}, {2027, 6, 20});
            form.submit();
            QVERIFY(form.windowWarning() && world.database.watchers().listSearches().isEmpty());
            QCOMPARE(form.caption(), u"Trykk Søk igjen for å beholde standardvinduet"_s);
            QVERIFY(form.warningText().contains(u"(16. jan. – 16. mar. 2027) — du valgte"_s));
            QCOMPARE(form.offerText(), u"Bruk 1. jun. – 20. jun. 2027 for utreisen også"_s);

            if (then == u"own") {
                form.outbound()->setWindow({2027, 5, 1}, {2027, 5, 20});
                QVERIFY(!form.windowWarning());
            }
            then == u"offer" ? form.takeOffer() : form.submit();
            QCOMPARE(world.database.watchers().listSearches().size(), 1);
            const Search stored = world.database.watchers().listSearches().constFirst();
            QCOMPARE(stored.dateFrom, from);
            QCOMPARE(stored.returnDateFrom, QDate(2027, 6, 1));
            QVERIFY(!form.windowWarning() && !form.outboundTouched() && !form.returnTouched());
            QCOMPARE(form.caption(), u"Legger til overvåker og sjekker med én gang"_s);
        }
    }
};

TINDRA_TEST(TestSearchForm)
#include "test_search_form.moc"
