// SPDX-License-Identifier: MIT
#include "ui/search/DateWindowField.h"

#include "platform/Clock.h"
#include "ui/search/DateText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int firstEnd = 0;
constexpr int daysAhead = 60;

} // namespace

DateWindowField::DateWindowField(QString title, const Clock& clock, QObject* parent)
    : QObject(parent)
    , m_title(std::move(title))
    , m_clock(clock)
    , m_from(standard().from)
    , m_to(standard().to) {
    connect(&m_calendar, &MonthCalendar::windowPicked, this, &DateWindowField::takePicked);
}

DateWindowField::Window DateWindowField::standard() const {
    const QDate today = m_clock.today();
    return {today.addDays(1), today.addDays(daysAhead)};
}

QString DateWindowField::standardText() const {
    const auto [from, to] = standard();
    return DateText::window(from, to);
}

QString DateWindowField::text() const {
    return DateText::window(m_from, m_to);
}

QString DateWindowField::fromText() const {
    return DateText::typed(m_from);
}

QString DateWindowField::toText() const {
    return DateText::typed(m_to);
}

void DateWindowField::setWindow(QDate from, QDate to) {
    if (!from.isValid() || !to.isValid())
        return;
    to = std::max(from, to);
    // Fields that are left as they were tell of it too.
    if (m_from == from && m_to == to)
        return;
    m_isStandard = false;
    show({from, to});
}

void DateWindowField::show(Window window) {
    m_from = window.from;
    m_to = window.to;
    // A calendar that knows already stays on its month.
    if (m_isOpen && (m_calendar.from() != m_from || m_calendar.to() != m_to))
        m_calendar.setWindow(m_from, m_to);
    Q_EMIT windowChanged();
}

void DateWindowField::reset() {
    m_isStandard = true;
    show(standard());
}

bool DateWindowField::isPast() const {
    return m_to < m_clock.today();
}

void DateWindowField::followDay() {
    if (m_isOpen)
        showToday();
    if (m_isStandard && m_from != standard().from)
        show(standard());
}

void DateWindowField::showToday() {
    m_calendar.setToday(m_clock.today());
    m_calendar.setMinimum(m_clock.today());
}

void DateWindowField::setOpen(bool open) {
    if (m_isOpen == open)
        return;
    m_isOpen = open;
    setProblem({});
    if (open) {
        showToday();
        m_calendar.setPicks(firstEnd);
        m_calendar.setWindow(m_from, m_to);
    }
    Q_EMIT openChanged();
}

void DateWindowField::typeFrom(const QString& text) {
    if (const auto date = allowed(text, m_from))
        setWindow(*date, m_to);
}

void DateWindowField::typeTo(const QString& text) {
    const auto date = allowed(text, m_to);
    if (!date)
        return;
    if (*date < m_from)
        setProblem(u"Til kan ikke være før Fra."_s);
    else
        setWindow(m_from, *date);
}

std::optional<QDate> DateWindowField::allowed(const QString& text, QDate current) {
    const QDate today = m_clock.today();
    const auto date = DateText::parse(text, today);
    if (!date) {
        setProblem(u"Skriv datoen som 31.12.%1."_s.arg(today.year()));
        return std::nullopt;
    }
    if (*date < today && *date != current) {
        setProblem(u"%1 har vært."_s.arg(DateText::typed(*date)));
        return std::nullopt;
    }
    setProblem({});
    return date;
}

void DateWindowField::setProblem(const QString& problem) {
    if (std::exchange(m_problem, problem) != problem)
        Q_EMIT problemChanged();
}

void DateWindowField::takePicked(QDate from, QDate to) {
    setProblem({});
    m_isStandard = false;
    setWindow(from, to);
    // Both ends are chosen once the calendar is back at the first.
    if (m_calendar.picks() == firstEnd)
        setOpen(false);
}
