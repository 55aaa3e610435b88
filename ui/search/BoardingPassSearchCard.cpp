// SPDX-License-Identifier: MIT
#include "ui/search/BoardingPassSearchCard.h"

#include "app/AppState.h"
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
        if (!m_outbound.isStandard()) {
            m_outboundTouched = true;
            m_warning = Warning::none;
        }
        Q_EMIT changed();
    });
    connect(&m_homebound, &DateWindowField::windowChanged, this, [this] {
        m_returnTouched = m_returnTouched || !m_homebound.isStandard();
        if (m_warning == Warning::past)
            m_warning = Warning::none;
        Q_EMIT changed();
    });
    // The state reloads when a day begins.
    connect(&state, &AppState::reloaded, this, &BoardingPassSearchCard::followDay);
}

QStringList BoardingPassSearchCard::presetLabels() const {
    QStringList labels;
    for (const Preset& preset : presets())
        labels.append(preset.label);
    return labels;
}

bool BoardingPassSearchCard::canSearch() const {
    return form().isComplete();
}

void BoardingPassSearchCard::followDay() {
    m_outbound.followDay();
    m_homebound.followDay();
}

bool BoardingPassSearchCard::hasPastWindow() const {
    return m_outbound.isPast() || (m_roundTrip && m_homebound.isPast());
}

QString BoardingPassSearchCard::warningText() const {
    if (m_warning == Warning::past)
        return u"⚠ %1-vinduet (%2) har vært. Velg nye datoer."_s.arg(
            m_outbound.isPast() ? u"Utreise"_s : u"Hjemreise"_s,
            (m_outbound.isPast() ? m_outbound : m_homebound).text());
    return u"⚠ Utreise-vinduet står på standard ("_s + m_outbound.text() +
           u") — du valgte bare hjemreise. Treffene følger utreise-vinduet."_s;
}

QString BoardingPassSearchCard::offerText() const {
    if (m_warning == Warning::past)
        return u"Bruk "_s + m_outbound.standardText() + u" i stedet"_s;
    return u"Bruk "_s + m_homebound.text() + u" for utreisen også"_s;
}

QString BoardingPassSearchCard::caption() const {
    switch (m_warning) {
    case Warning::onlyReturnChosen:
        return u"Trykk Søk igjen for å beholde standardvinduet"_s;
    case Warning::past:
        return u"Søk når datoene er nye"_s;
    case Warning::none:
        break;
    }
    return u"Legger til overvåker og sjekker med én gang"_s;
}

WatcherForm BoardingPassSearchCard::form() const {
    WatcherForm form{
        m_name,     m_origin.code(), m_destination.code(), m_cabins.cabins(),
        m_minSeats, m_maxStops,      m_includePartners,    {m_outbound.from(), m_outbound.to()},
        {}};
    if (m_roundTrip)
        form.home = {m_homebound.from(), m_homebound.to()};
    return form;
}

void BoardingPassSearchCard::submit() {
    if (!canSearch())
        return;
    TDLog::note(
        u"Soek trykket: origin='%1' dest='%2' rt=%3 touched(ut=%4,hjem=%5) warning=%6"_s.arg(
            m_origin.code(), m_destination.code(), yesOrNo(m_roundTrip), yesOrNo(m_outboundTouched),
            yesOrNo(m_returnTouched), yesOrNo(windowWarning())));
    followDay();
    if (hasPastWindow()) {
        TDLog::note(u"submit -> datoene er passert"_s);
        set(m_warning, Warning::past);
        return;
    }
    if (m_roundTrip && m_returnTouched && !m_outboundTouched && !windowWarning()) {
        TDLog::note(u"submit -> viser inline-datovarsel"_s);
        set(m_warning, Warning::onlyReturnChosen);
        return;
    }
    save();
}

void BoardingPassSearchCard::save() {
    // What was typed stays until it is stored.
    if (!m_state.addSearchAndRun(form().applied()))
        return;
    m_name.clear();
    m_destination.setCode({});
    m_outboundTouched = false;
    m_returnTouched = false;
    m_warning = Warning::none;
    Q_EMIT changed();
    Q_EMIT saved();
}

void BoardingPassSearchCard::takeOffer() {
    if (!canSearch())
        return;
    if (m_warning == Warning::onlyReturnChosen)
        m_outbound.setWindow(m_homebound.from(), m_homebound.to());
    for (DateWindowField* field : {&m_outbound, &m_homebound}) {
        if (field->isPast())
            field->reset();
    }
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
    m_cabins.setCabins(WatcherForm::usualCabins);
    m_name = name;
    m_roundTrip = true;
    Q_EMIT changed();
}

void BoardingPassSearchCard::usePreset(int index) {
    const Preset& preset = presets().at(static_cast<size_t>(index));
    applyPreset(preset.name, preset.origin, preset.dests);
}
