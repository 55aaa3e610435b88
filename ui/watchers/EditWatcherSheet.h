// SPDX-License-Identifier: MIT
#pragma once

#include "core/WatcherForm.h"
#include "ui/search/AirportField.h"
#include "ui/search/CabinChips.h"
#include "ui/search/DateWindowField.h"

#include <QDate>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <algorithm>

class Clock;
class WatcherStore;

/// The date windows that a watcher is edited with. What it does not hold as valid dates is chosen:
/// the outbound window starts `today`, the return window with the outbound one, and both end 60
/// days after they start.
struct EditedWindows {
    QDate dateFrom;
    QDate dateTo;
    QDate retFrom;
    QDate retTo;
    bool operator==(const EditedWindows&) const = default;

    static EditedWindows of(const Search& watcher, QDate today);
    /// Those of a watcher whose dates are past, moved on by whole days so that they begin `today`;
    /// one without an end stays a single day.
    static EditedWindows moved(const Search& watcher, QDate today);
};

/// A watcher while the user changes what it watches. Nothing is stored before `save`.
class EditWatcherSheet : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(EditWatcherSheetModel)
    QML_UNCREATABLE("made by WatchersSection")

    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(AirportField* origin READ origin CONSTANT)
    Q_PROPERTY(AirportField* destination READ destination CONSTANT)
    Q_PROPERTY(DateWindowField* outbound READ outbound CONSTANT)
    Q_PROPERTY(DateWindowField* homebound READ homebound CONSTANT)
    Q_PROPERTY(CabinChips* cabins READ cabins CONSTANT)
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed)
    Q_PROPERTY(bool roundTrip MEMBER m_roundTrip NOTIFY changed)
    /// 1 to `mostSeats`.
    Q_PROPERTY(int minSeats READ minSeats WRITE setMinSeats NOTIFY changed)
    /// 0 to `mostStops`.
    Q_PROPERTY(int maxStops READ maxStops WRITE setMaxStops NOTIFY changed)
    Q_PROPERTY(int mostSeats READ mostSeats CONSTANT)
    Q_PROPERTY(int mostStops READ mostStops CONSTANT)
    Q_PROPERTY(bool includePartners MEMBER m_includePartners NOTIFY changed)
    /// False while a place is missing.
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed)
    /// Why the sheet is still open after `save`; mostly empty.
    Q_PROPERTY(QString problem MEMBER m_problem NOTIFY changed)
public:
    /// `store` and `clock` must outlive the sheet.
    EditWatcherSheet(WatcherStore& store, const Clock& clock, const Search& original,
                     const EditedWindows& windows, QObject* parent = nullptr);

    QString title() const;
    AirportField* origin() { return &m_origin; }
    AirportField* destination() { return &m_destination; }
    DateWindowField* outbound() { return &m_outbound; }
    DateWindowField* homebound() { return &m_homebound; }
    CabinChips* cabins() { return &m_cabins; }
    static int mostSeats() { return WatcherForm::mostSeats; }
    static int mostStops() { return WatcherForm::mostStops; }
    int minSeats() const { return m_minSeats; }
    void setMinSeats(int seats);
    int maxStops() const { return m_maxStops; }
    void setMaxStops(int stops);
    bool canSave() const;

    /// The watcher as it would be stored.
    Search edited() const;
    /// Stores it and is `finished`, or says in `problem` that it could not be stored.
    Q_INVOKABLE void save();

Q_SIGNALS:
    void changed();
    void finished();

private:
    WatcherForm form() const;

    WatcherStore& m_store;
    const Search m_original;
    QString m_problem;
    QString m_name;
    AirportField m_origin{AirportField::Field::from};
    AirportField m_destination{AirportField::Field::to};
    CabinChips m_cabins;
    int m_minSeats;
    int m_maxStops;
    bool m_includePartners;
    bool m_roundTrip;
    DateWindowField m_outbound;
    DateWindowField m_homebound;
};
