// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>
#include <QTime>

/// A moment by the clock of the airport where it happens, to the minute.
class LocalTime {
public:
    LocalTime() = default;
    LocalTime(QDate date, QTime time) : m_date(date), m_time(time) {}

    /// Invalid when it is not known.
    QDate date() const { return m_date; }
    QTime time() const { return m_time; }
    /// Nothing is known.
    bool isEmpty() const { return !isKnown() && m_other.isEmpty(); }
    bool isKnown() const { return m_date.isValid() && m_time.isValid(); }

    bool operator==(const LocalTime&) const = default;

    /// Such as "14.03 09:05", the form of records, without a year; a text that could not be read is
    /// given back unchanged.
    QString text() const;

    /// What the airline writes, such as "2026-03-14T09:05:00". What comes behind the minutes does
    /// not matter; a text of another form is kept as it is.
    static LocalTime fromAirline(const QString& text);
    /// The reverse of `text`: the day nearest to `reference` counts, for want of a year.
    static LocalTime fromText(const QString& text, QDate reference);

private:
    QDate m_date;
    QTime m_time;
    /// What could not be read; empty otherwise.
    QString m_other;
};
