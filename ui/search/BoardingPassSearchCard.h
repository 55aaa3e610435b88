// SPDX-License-Identifier: MIT
#pragma once

#include "core/Search.h"
#include "ui/search/AirportField.h"
#include "ui/search/CabinChips.h"
#include "ui/search/DateWindowField.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class AppState;

/// The search form: what the user asks for, until "Søk" makes a watcher of it.
class BoardingPassSearchCard : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(BoardingPassSearchCardModel)
    QML_UNCREATABLE("made by whoever shows the form")

    Q_PROPERTY(AirportField* origin READ origin CONSTANT)
    Q_PROPERTY(AirportField* destination READ destination CONSTANT)
    Q_PROPERTY(DateWindowField* outbound READ outbound CONSTANT)
    Q_PROPERTY(DateWindowField* homebound READ homebound CONSTANT)
    Q_PROPERTY(CabinChips* cabins READ cabins CONSTANT)
    Q_PROPERTY(QStringList presetLabels READ presetLabels CONSTANT)

    Q_PROPERTY(bool roundTrip READ roundTrip WRITE setRoundTrip NOTIFY changed)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(int minSeats READ minSeats WRITE setMinSeats NOTIFY changed)
    Q_PROPERTY(int maxStops READ maxStops WRITE setMaxStops NOTIFY changed)
    Q_PROPERTY(int mostSeats READ mostSeats CONSTANT)
    Q_PROPERTY(int mostStops READ mostStops CONSTANT)
    Q_PROPERTY(bool includePartners READ includePartners WRITE setIncludePartners NOTIFY changed)
    /// Changes with every swap: the swap button's icon is turned half round while it is true.
    Q_PROPERTY(bool swapSpin READ swapSpin NOTIFY changed)

    Q_PROPERTY(bool canSearch READ canSearch NOTIFY changed)
    /// Whether a warning is shown: only the return window was chosen, or a window has passed.
    Q_PROPERTY(bool windowWarning READ windowWarning NOTIFY changed)
    Q_PROPERTY(QString warningText READ warningText NOTIFY changed)
    /// What the warning's button does.
    Q_PROPERTY(QString offerText READ offerText NOTIFY changed)
    Q_PROPERTY(QString caption READ caption NOTIFY changed)

public:
    /// Both must outlive the form.
    BoardingPassSearchCard(AppState& state, const Clock& clock, QObject* parent = nullptr);

    AirportField* origin() { return &m_origin; }
    AirportField* destination() { return &m_destination; }
    DateWindowField* outbound() { return &m_outbound; }
    DateWindowField* homebound() { return &m_homebound; }
    CabinChips* cabins() { return &m_cabins; }
    QStringList presetLabels() const;

    bool roundTrip() const { return m_roundTrip; }
    void setRoundTrip(bool roundTrip) { set(m_roundTrip, roundTrip); }
    const QString& name() const { return m_name; }
    void setName(const QString& name) { set(m_name, name); }
    static int mostSeats() { return WatcherForm::mostSeats; }
    static int mostStops() { return WatcherForm::mostStops; }
    /// 1 to `mostSeats`.
    int minSeats() const { return m_minSeats; }
    void setMinSeats(int seats) { set(m_minSeats, WatcherForm::seats(seats)); }
    /// 0 to `mostStops`.
    int maxStops() const { return m_maxStops; }
    void setMaxStops(int stops) { set(m_maxStops, WatcherForm::stops(stops)); }
    bool includePartners() const { return m_includePartners; }
    void setIncludePartners(bool include) { set(m_includePartners, include); }
    bool swapSpin() const { return m_swapSpin; }

    bool outboundTouched() const { return m_outboundTouched; }
    bool returnTouched() const { return m_returnTouched; }
    /// Both fields have a text; whether its codes exist is not asked.
    bool canSearch() const;
    bool windowWarning() const { return m_warning != Warning::none; }
    QString warningText() const;
    QString offerText() const;
    QString caption() const;

    /// The search button: warns once when only the return window was chosen, and for as long as a
    /// window has passed; else saves.
    Q_INVOKABLE void submit();
    /// Stores the watcher, starts a round and clears what belongs to this search alone.
    void save();
    /// The warning's button: the return window for the outbound journey too, or the standard window
    /// in the place of one that has passed; and saves. Nothing without both places.
    Q_INVOKABLE void takeOffer();
    Q_INVOKABLE void swap();
    void applyPreset(const QString& name, const QString& origin, const QString& dests);
    Q_INVOKABLE void usePreset(int index);

Q_SIGNALS:
    void changed();
    void saved();

private:
    enum class Warning { none, onlyReturnChosen, past };

    WatcherForm form() const;
    bool hasPastWindow() const;
    void followDay();

    template<typename T>
    void set(T& member, T value) {
        if (member == value)
            return;
        member = std::move(value);
        Q_EMIT changed();
    }

    AppState& m_state;
    AirportField m_origin{AirportField::Field::from};
    AirportField m_destination{AirportField::Field::to};
    DateWindowField m_outbound;
    DateWindowField m_homebound;
    CabinChips m_cabins;

    bool m_roundTrip = true;
    QString m_name;
    int m_minSeats = 1;
    int m_maxStops = 2;
    bool m_includePartners = true;
    bool m_swapSpin = false;
    bool m_outboundTouched = false;
    bool m_returnTouched = false;
    Warning m_warning = Warning::none;
};
