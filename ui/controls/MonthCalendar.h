// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QDate>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

/// A month's page of six weeks, Monday first, on which a window of days is shown and picked. Dates
/// are local calendar dates; an invalid one means "none". Names are Norwegian.
class MonthCalendar : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the screen's view-model")

    Q_PROPERTY(QString title READ title NOTIFY monthChanged)
    Q_PROPERTY(QStringList weekdays READ weekdays CONSTANT)
    Q_PROPERTY(bool hasPrevious READ hasPrevious NOTIFY changed)
    Q_PROPERTY(QString cursorText READ cursorText NOTIFY changed)
    /// Which end the next pick sets: 0 the first day, 1 the last.
    Q_PROPERTY(int picks READ picks WRITE setPicks NOTIFY changed)

public:
    enum Role {
        DayRole = Qt::UserRole,
        NameRole,
        InMonthRole,
        PickableRole,
        IsStartRole,
        IsEndRole,
        InWindowRole,
        IsTodayRole,
        IsCursorRole,
    };

    explicit MonthCalendar(QObject* parent = nullptr);

    /// Shows the window from `from` to `to`, both included, and turns to the month of the end that
    /// is picked next.
    void setWindow(QDate from, QDate to);
    /// Days before it cannot be picked; none without it.
    void setMinimum(QDate minimum);
    /// The day that is marked as today.
    void setToday(QDate today);
    QDate from() const { return m_from; }
    QDate to() const { return m_to; }
    QDate minimum() const { return m_minimum; }
    /// The first day of the month shown.
    QDate visibleMonth() const { return m_month; }
    void setVisibleMonth(QDate dayInMonth);
    QDate cursor() const { return m_cursor; }
    int picks() const { return m_picks; }
    void setPicks(int end);

    /// Such as "mars 2027".
    QString title() const;
    /// Such as "man.", from Monday.
    QStringList weekdays() const;
    /// The day that the arrow keys have reached, in full.
    QString cursorText() const;
    bool hasPrevious() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Turns the page by `months`, the cursor with it.
    Q_INVOKABLE void showMonth(int months);
    /// Moves the cursor, and with it the page; it does not leave the days that can be picked.
    Q_INVOKABLE void moveCursor(int days);
    Q_INVOKABLE void pickCursor() { pickDay(m_cursor); }
    Q_INVOKABLE void pick(int cell) { pickDay(dateOf(cell)); }

Q_SIGNALS:
    void monthChanged();
    void changed();
    /// The user has changed the window. After a first day behind the last one, both are that day.
    void windowPicked(QDate from, QDate to);

private:
    QDate dateOf(int cell) const;
    QDate earliest() const;
    void pickDay(QDate day);
    void show(QDate day);
    void refresh();

    QDate m_month;
    QDate m_from;
    QDate m_to;
    QDate m_minimum;
    QDate m_today;
    QDate m_cursor;
    int m_picks = 0;
};
