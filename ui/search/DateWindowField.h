// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/MonthCalendar.h"

#include <QDate>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

class Clock;

/// A window of travel dates, both ends included, and its picker: a calendar and two dates to type.
/// The last day is never before the first; the user cannot pick a day that has passed.
class DateWindowField : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(DateWindowFieldModel)
    QML_UNCREATABLE("made by the screen's view-model")

    Q_PROPERTY(QString title READ title CONSTANT)
    /// "7. mar. – 6. mai 2026".
    Q_PROPERTY(QString text READ text NOTIFY windowChanged)
    /// "07.03.2026".
    Q_PROPERTY(QString fromText READ fromText NOTIFY windowChanged)
    Q_PROPERTY(QString toText READ toText NOTIFY windowChanged)
    /// Whether the picker is shown.
    Q_PROPERTY(bool open READ isOpen WRITE setOpen NOTIFY openChanged)
    Q_PROPERTY(MonthCalendar* calendar READ calendar CONSTANT)
    /// Why the date typed last was not taken, in Norwegian; empty when it was.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

public:
    /// Starts as the standard window, tomorrow to 60 days from now; `clock` must outlive the field.
    DateWindowField(QString title, const Clock& clock, QObject* parent = nullptr);

    const QString& title() const { return m_title; }
    QString text() const;
    QString fromText() const;
    QString toText() const;
    QDate from() const { return m_from; }
    QDate to() const { return m_to; }
    /// Also takes days that have passed; a last day before the first becomes the first. An invalid
    /// date changes nothing.
    void setWindow(QDate from, QDate to);
    /// The standard window as of today, in the place of whatever was chosen.
    void reset();
    /// Nobody has chosen a window since the start or `reset`.
    bool isStandard() const { return m_isStandard; }
    /// What `reset` would show.
    QString standardText() const;
    /// Its last day has passed.
    bool isPast() const;
    /// To be called when a day has begun: the standard window moves with it, a chosen one stays.
    void followDay();
    bool isOpen() const { return m_isOpen; }
    void setOpen(bool open);
    MonthCalendar* calendar() { return &m_calendar; }
    const QString& problem() const { return m_problem; }

    /// Takes a date as the user typed it. One that is no date or may not be picked changes nothing
    /// but `problem`.
    Q_INVOKABLE void typeFrom(const QString& text);
    Q_INVOKABLE void typeTo(const QString& text);

Q_SIGNALS:
    void windowChanged();
    void openChanged();
    void problemChanged();

private:
    /// `text` as a date that may replace `current`; absent, with `problem` set, when it may not.
    std::optional<QDate> allowed(const QString& text, QDate current);
    void setProblem(const QString& problem);
    void takePicked(QDate from, QDate to);

    struct Window {
        QDate from;
        QDate to;
    };
    Window standard() const;
    void show(Window window);
    void showToday();

    const QString m_title;
    const Clock& m_clock;
    QDate m_from;
    QDate m_to;
    bool m_isStandard = true;
    bool m_isOpen = false;
    QString m_problem;
    MonthCalendar m_calendar;
};
