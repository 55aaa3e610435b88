// SPDX-License-Identifier: MIT
#include "ui/controls/MonthCalendar.h"

#include "core/Norwegian.h"

namespace {

constexpr int daysShown = 42;

QDate firstOfMonth(QDate day) {
    return {day.year(), day.month(), 1};
}

} // namespace

MonthCalendar::MonthCalendar(QObject* parent)
    : QAbstractListModel(parent), m_month(2000, 1, 1), m_cursor(m_month) {}

void MonthCalendar::setWindow(QDate from, QDate to) {
    m_from = from;
    m_to = to;
    const QDate end = m_picks == 0 ? from : to;
    if (end.isValid())
        show(end);
    refresh();
}

void MonthCalendar::setMinimum(QDate minimum) {
    m_minimum = minimum;
    refresh();
}

void MonthCalendar::setToday(QDate today) {
    m_today = today;
    refresh();
}

void MonthCalendar::setVisibleMonth(QDate dayInMonth) {
    if (dayInMonth.isValid())
        show(dayInMonth);
}

void MonthCalendar::setPicks(int end) {
    if (m_picks == end)
        return;
    m_picks = end;
    const QDate day = end == 0 ? m_from : m_to;
    if (day.isValid())
        show(day);
    refresh();
}

QString MonthCalendar::title() const {
    return Norwegian::monthAndYear(m_month);
}

QStringList MonthCalendar::weekdays() const {
    QStringList names;
    for (int day = Qt::Monday; day <= Qt::Sunday; ++day)
        names.append(Norwegian::weekday(day));
    return names;
}

QString MonthCalendar::cursorText() const {
    return Norwegian::fullDate(m_cursor);
}

bool MonthCalendar::hasPrevious() const {
    return !earliest().isValid() || earliest() < m_month;
}

int MonthCalendar::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : daysShown;
}

QVariant MonthCalendar::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QDate day = dateOf(index.row());
    switch (role) {
    case DayRole:
        return day.day();
    case NameRole:
        return Norwegian::fullDate(day);
    case InMonthRole:
        return firstOfMonth(day) == m_month;
    case PickableRole:
        return !earliest().isValid() || day >= earliest();
    case IsStartRole:
        return day == m_from;
    case IsEndRole:
        return day == m_to;
    case InWindowRole:
        return m_from.isValid() && m_to.isValid() && day >= m_from && day <= m_to;
    case IsTodayRole:
        return day == m_today;
    case IsCursorRole:
        return day == m_cursor;
    default:
        return {};
    }
}

QHash<int, QByteArray> MonthCalendar::roleNames() const {
    return {{DayRole, "day"},           {NameRole, "name"},       {InMonthRole, "inMonth"},
            {PickableRole, "pickable"}, {IsStartRole, "isStart"}, {IsEndRole, "isEnd"},
            {InWindowRole, "inWindow"}, {IsTodayRole, "isToday"}, {IsCursorRole, "isCursor"}};
}

void MonthCalendar::showMonth(int months) {
    show(m_cursor.addMonths(months));
}

void MonthCalendar::moveCursor(int days) {
    show(m_cursor.addDays(days));
}

QDate MonthCalendar::dateOf(int cell) const {
    return m_month.addDays(cell - (m_month.dayOfWeek() - Qt::Monday));
}

QDate MonthCalendar::earliest() const {
    // The last day is never before the first.
    return m_picks == 1 && m_from.isValid() ? std::max(m_from, m_minimum) : m_minimum;
}

void MonthCalendar::pickDay(QDate day) {
    if (earliest().isValid() && day < earliest())
        return;
    if (m_picks == 0) {
        m_from = day;
        if (!m_to.isValid() || m_to < day)
            m_to = day;
        m_picks = 1;
    } else {
        m_to = day;
        if (!m_from.isValid())
            m_from = day;
        m_picks = 0;
    }
    show(day);
    refresh();
    Q_EMIT windowPicked(m_from, m_to);
}

void MonthCalendar::show(QDate day) {
    m_cursor = earliest().isValid() ? std::max(day, earliest()) : day;
    const QDate month = firstOfMonth(m_cursor);
    if (std::exchange(m_month, month) != month)
        Q_EMIT monthChanged();
    refresh();
}

void MonthCalendar::refresh() {
    Q_EMIT dataChanged(index(0), index(daysShown - 1));
    Q_EMIT changed();
}
