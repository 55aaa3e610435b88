// SPDX-License-Identifier: MIT
#include "ui/search/BoardingPassSearchCard.h"

#include "app/AppState.h"
#include "core/DateFmt.h"
#include "core/TDLog.h"
#include "ui/search/CodeList.h"
#include "ui/search/DateText.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Preset {
    QString label;
    QString name;
    QString origin;
    QString dests;
};

const std::array<Preset, 2>& presets() {
    static const std::array<Preset, 2> all{
        Preset{u"🇺🇸 USA i business"_s, u"USA i business"_s, u"OSL, CPH, AMS, CDG"_s,
               u"ATL, BOS, ORD, DTW, LAX, MSP, JFK, EWR, SLC, SFO, SEA, IAD"_s},
        Preset{u"🌏 Asia i business"_s, u"Asia i business"_s, u"CPH"_s,
               u"BKK, HND, NRT, SIN, PVG"_s},
    };
    return all;
}

QString yesOrNo(bool value) {
    return value ? u"true"_s : u"false"_s;
}

} // namespace

BoardingPassSearchCard::BoardingPassSearchCard(AppState& state, const Clock& clock, QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_outbound(u"AVREISE-VINDU"_s, clock)
    , m_homebound(u"HJEMREISE-VINDU"_s, clock) {
    m_origin.setCode(u"OSL"_s);
    connect(&m_origin, &AirportField::codeChanged, this, &BoardingPassSearchCard::changed);
    connect(&m_destination, &AirportField::codeChanged, this, &BoardingPassSearchCard::changed);
    connect(&m_outbound, &DateWindowField::windowChanged, this, [this] {
        m_outboundTouched = true;
        m_windowWarning = false;
        Q_EMIT changed();
    });
    connect(&m_homebound, &DateWindowField::windowChanged, this, [this] {
        m_returnTouched = true;
        Q_EMIT changed();
    });
}

QStringList BoardingPassSearchCard::presetLabels() const {
    QStringList labels;
    for (const Preset& preset : presets())
        labels.append(preset.label);
    return labels;
}

bool BoardingPassSearchCard::canSearch() const {
    return !m_origin.code().isEmpty() && !m_destination.code().isEmpty();
}

QString BoardingPassSearchCard::warningText() const {
    return u"⚠ Utreise-vinduet står på standard ("_s + m_outbound.text() +
           u") — du valgte bare hjemreise. Treffene følger utreise-vinduet."_s;
}

QString BoardingPassSearchCard::reuseText() const {
    return u"Bruk "_s + m_homebound.text() + u" for utreisen også"_s;
}

QString BoardingPassSearchCard::caption() const {
    return m_windowWarning ? u"Trykk Søk igjen for å beholde standardvinduet"_s
                           : u"Legger til overvåker og sjekker med én gang"_s;
}

void BoardingPassSearchCard::submit() {
    if (!canSearch())
        return;
    TDLog::note(
        u"Soek trykket: origin='%1' dest='%2' rt=%3 touched(ut=%4,hjem=%5) warning=%6"_s.arg(
            m_origin.code(), m_destination.code(), yesOrNo(m_roundTrip), yesOrNo(m_outboundTouched),
            yesOrNo(m_returnTouched), yesOrNo(m_windowWarning)));
    if (m_roundTrip && m_returnTouched && !m_outboundTouched && !m_windowWarning) {
        TDLog::note(u"submit -> viser inline-datovarsel"_s);
        set(m_windowWarning, true);
        return;
    }
    save();
}

void BoardingPassSearchCard::save() {
    Search search;
    search.name = m_name;
    search.origin = CodeList::stored(m_origin.code());
    search.destination = CodeList::stored(m_destination.code());
    search.cabins = m_cabins.cabinsToStore();
    search.minSeats = m_minSeats;
    search.maxStops = m_maxStops;
    search.includePartners = m_includePartners;
    search.dateFrom = DateFmt::iso(m_outbound.from());
    search.dateTo = DateFmt::iso(m_outbound.to());
    if (m_roundTrip) {
        search.returnDateFrom = DateFmt::iso(m_homebound.from());
        search.returnDateTo = DateFmt::iso(m_homebound.to());
    }
    m_state.addSearchAndRun(search);

    m_name.clear();
    m_destination.setCode({});
    m_outboundTouched = false;
    m_returnTouched = false;
    m_windowWarning = false;
    Q_EMIT changed();
    Q_EMIT saved();
}

void BoardingPassSearchCard::reuseReturnWindow() {
    if (!canSearch())
        return;
    m_outbound.setWindow(m_homebound.from(), m_homebound.to());
    save();
}

void BoardingPassSearchCard::swap() {
    const CodeList::Ends ends = CodeList::swapped({m_origin.code(), m_destination.code()});
    m_origin.setCode(ends.origin);
    m_destination.setCode(ends.destination);
    set(m_swapSpin, !m_swapSpin);
}

void BoardingPassSearchCard::applyPreset(const QString& name, const QString& origin,
                                         const QString& dests) {
    m_origin.setCode(origin);
    m_destination.setCode(dests);
    m_cabins.setCabins(CabinChips::usual());
    m_name = name;
    m_roundTrip = true;
    Q_EMIT changed();
}

void BoardingPassSearchCard::usePreset(int index) {
    const Preset& preset = presets().at(static_cast<size_t>(index));
    applyPreset(preset.name, preset.origin, preset.dests);
}
