// SPDX-License-Identifier: MIT
#include "tests/ui/support/PageWindow.h"
#include "ui/controls/MonthCalendar.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

/// The days of the page for which `role` holds, as they are numbered.
QStringList days(const MonthCalendar& calendar, int role) {
    QStringList found;
    for (int cell = 0; cell < calendar.rowCount(); ++cell)
        if (calendar.index(cell).data(role).toBool())
            found.append(calendar.index(cell).data(MonthCalendar::DayRole).toString());
    return found;
}

} // namespace

class TestMonthCalendar : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aPageHasSixWeeksFromMonday_data() {
        QTest::addColumn<QDate>("month");
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("firstDay");
        QTest::addColumn<int>("lastDay");
        QTest::newRow("begins on a Sunday") << QDate(2026, 11, 15) << u"november 2026"_s << 26 << 6;
        QTest::newRow("begins on a Monday") << QDate(2027, 2, 28) << u"februar 2027"_s << 1 << 14;
        QTest::newRow("leap year") << QDate(2028, 2, 29) << u"februar 2028"_s << 31 << 12;
    }
    void aPageHasSixWeeksFromMonday() {
        QFETCH(QDate, month);
        MonthCalendar calendar;
        const QAbstractItemModelTester tester(&calendar);
        calendar.setVisibleMonth(month);
        QTEST(calendar.title(), "title");
        QCOMPARE(calendar.rowCount(), 42);
        QTEST(calendar.index(0).data(MonthCalendar::DayRole).toInt(), "firstDay");
        QTEST(calendar.index(41).data(MonthCalendar::DayRole).toInt(), "lastDay");
        QCOMPARE(days(calendar, MonthCalendar::InMonthRole).size(), month.daysInMonth());
        QCOMPARE(calendar.weekdays().first(), u"man."_s);
        QCOMPARE(calendar.weekdays().last(), u"søn."_s);
    }

    void theWindowIsMarked() {
        MonthCalendar calendar;
        calendar.setToday({2026, 11, 24});
        calendar.setWindow({2026, 11, 27}, {2026, 12, 2});
        QCOMPARE(days(calendar, MonthCalendar::IsStartRole), QStringList{u"27"_s});
        QCOMPARE(days(calendar, MonthCalendar::IsEndRole), QStringList{u"2"_s});
        QCOMPARE(days(calendar, MonthCalendar::InWindowRole).join(u' '), u"27 28 29 30 1 2"_s);
        QCOMPARE(days(calendar, MonthCalendar::IsTodayRole), QStringList{u"24"_s});
    }

    void picksMoveFromEndToEnd() {
        MonthCalendar calendar;
        const QSignalSpy picked(&calendar, &MonthCalendar::windowPicked);
        calendar.setMinimum({2026, 11, 23});
        calendar.setWindow({2026, 11, 27}, {2026, 12, 2});
        // Too early: nothing happens.
        calendar.pick(0);
        QCOMPARE(picked.size(), 0);
        // A first day behind the last takes the last along.
        calendar.moveCursor(20);
        calendar.pickCursor();
        QCOMPARE(picked.value(0), (QVariantList{QDate(2026, 12, 17), QDate(2026, 12, 17)}));
        QCOMPARE(calendar.picks(), 1);
        // The last day cannot be before the first.
        calendar.moveCursor(-1);
        calendar.pickCursor();
        QCOMPARE(picked.value(1), (QVariantList{QDate(2026, 12, 17), QDate(2026, 12, 17)}));
        calendar.setPicks(1);
        calendar.moveCursor(31);
        calendar.pickCursor();
        QCOMPARE(picked.value(2), (QVariantList{QDate(2026, 12, 17), QDate(2027, 1, 17)}));
        QCOMPARE(calendar.picks(), 0);
    }

    void theCursorTurnsThePageAndStaysInReach() {
        MonthCalendar calendar;
        calendar.setMinimum({2026, 11, 23});
        calendar.setWindow({2026, 11, 30}, {2027, 1, 31});
        calendar.moveCursor(1);
        QCOMPARE(calendar.title(), u"desember 2026"_s);
        QVERIFY(calendar.hasPrevious());
        calendar.showMonth(-1);
        calendar.showMonth(-1);
        QCOMPARE(calendar.cursor(), QDate(2026, 11, 23));
        QVERIFY(!calendar.hasPrevious());
        calendar.setPicks(1);
        QCOMPARE(calendar.cursor(), QDate(2027, 1, 31));
        calendar.showMonth(1);
        QCOMPARE(calendar.cursor(), QDate(2027, 2, 28));
    }

    void itIsUsedWithKeysAndMouse() {
        MonthCalendar calendar;
        calendar.setMinimum({2026, 11, 10});
        calendar.setWindow({2026, 11, 23}, {2026, 11, 25});
        const QSignalSpy picked(&calendar, &MonthCalendar::windowPicked);
        PageWindow page("import Tindra.Controls\nTDMonthCalendar { focus: true }",
                        {{u"calendar"_s, QVariant::fromValue(&calendar)}}, {260, 300});
        QVERIFY(page.isShown(u"november 2026"_s));
        page.key(Qt::Key_Down);
        page.key(Qt::Key_Right);
        page.key(Qt::Key_Return);
        QCOMPARE(calendar.from(), QDate(2026, 12, 1));
        QVERIFY(page.isShown(u"desember 2026"_s));
        page.click(u"lørdag 5. desember 2026"_s);
        QCOMPARE(calendar.to(), QDate(2026, 12, 5));
        page.click(u"Forrige måned"_s);
        page.click(u"mandag 9. november 2026"_s);
        QCOMPARE(picked.size(), 2);
        page.key(Qt::Key_PageDown);
        QVERIFY(page.isShown(u"desember 2026"_s));
    }
};

TINDRA_UI_TEST(TestMonthCalendar)
#include "test_month_calendar.moc"
