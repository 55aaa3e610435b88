// SPDX-License-Identifier: MIT
#include "ui/hits/HitsPage.h"

#include "app/AppState.h"
#include "app/MatchTable.h"
#include "core/DateFmt.h"
#include "core/OfferStore.h"
#include "platform/Desktop.h"
#include "ui/hits/Export.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

HitsPage::HitsPage(AppState& state, OfferStore& offers, Desktop& desktop, Clock& clock,
                   const Site& site)
    : m_state(state)
    , m_offers(offers)
    , m_desktop(desktop)
    , m_clock(clock)
    , m_site(site)
    , m_filter(state)
    , m_rows(clock, site) {
    connect(&state, &AppState::matchesChanged, this, &HitsPage::scheduleRegroup);
    connect(&state, &AppState::communityHitsChanged, this, &HitsPage::scheduleRegroup);
    connect(&state, &AppState::searchesChanged, this, &HitsPage::scheduleRegroup);
    connect(&m_filter, &HitsFilter::shownChanged, this, &HitsPage::regroup);
}

HitsPage::~HitsPage() = default;

void HitsPage::setColumns(int columns) {
    const int atLeastOne = std::max(columns, 1);
    if (std::exchange(m_layout.columns, atLeastOne) == atLeastOne)
        return;
    if (!m_isStale)
        layOut();
    Q_EMIT columnsChanged();
}

/// A reload tells of several changes in a row; they are worth one new grouping.
void HitsPage::scheduleRegroup() {
    m_isStale = true;
    if (!m_shown || std::exchange(m_isScheduled, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isScheduled = false;
            if (m_isStale && m_shown)
                regroup();
        },
        Qt::QueuedConnection);
}

void HitsPage::regroup() {
    m_isStale = false;
    m_filtered = Journeys::filtered(m_state.matches(), m_state.communityHits(), m_filter.filter());
    m_journeys = Journeys::grouped(
        m_filtered, m_filter.sorting(), m_filter.cardSorting(),
        [this](const Match& match) { return m_state.direction(match) == Direction::out; });
    m_layout.hasRegions = m_filter.sorting() == Journeys::SortOrder::region;
    layOut();
    Q_EMIT contentChanged();
}

void HitsPage::layOut() {
    m_rows.setRows(hitsRows(m_journeys, m_layout,
                            [this](const Match& match) { return m_state.direction(match); }));
}

QString HitsPage::countText() const {
    return u"%1 treff"_s.arg(m_filtered.size());
}

QString HitsPage::emptyText() const {
    if (!m_filtered.isEmpty())
        return {};
    return m_state.matches().isEmpty()
               ? u"Ingen treff ennå. Når et søk finner ny saver-plass, dukker reisen opp her."_s
               : u"Ingen treff matcher filtrene."_s;
}

bool HitsPage::hasMatches() const {
    return !m_state.matches().isEmpty();
}

void HitsPage::setConfirmClear(bool confirm) {
    if (std::exchange(m_confirmClear, confirm) != confirm)
        Q_EMIT confirmClearChanged();
}

void HitsPage::clearAll() {
    setConfirmClear(false);
    if (m_offers.takeMatches())
        say(u"Alle treff er slettet."_s, true);
}

void HitsPage::undoClear() {
    if (!m_canUndo)
        return;
    if (m_offers.restoreMatches())
        dismissNotice();
    else
        say(u"Treffene kunne ikke legges tilbake. Prøv igjen."_s, true);
}

void HitsPage::dismissNotice() {
    say({});
}

/// Whatever is said, there is a way back only from what was said last.
void HitsPage::say(const QString& text, bool canUndo) {
    m_notice = text;
    m_canUndo = canUndo;
    Q_EMIT noticeChanged();
}

void HitsPage::reveal(const QString& subject) {
    const auto offer = OfferId::fromText(subject);
    const auto holds = [&offer](const Hit& hit) {
        const auto* match = std::get_if<Match>(&hit);
        return match && match->offer() == offer;
    };
    const auto isThere = [this, &holds] {
        return std::any_of(m_filtered.begin(), m_filtered.end(), holds);
    };
    regroup();
    if (!isThere())
        m_filter.reset();
    if (!isThere())
        return;
    const auto journey =
        std::find_if(m_journeys.begin(), m_journeys.end(), [&holds](const JourneyGroup& group) {
            return std::any_of(group.out.begin(), group.out.end(), holds) ||
                   std::any_of(group.ret.begin(), group.ret.end(), holds);
        });
    m_layout.open.insert(journey->id);
    layOut();
    const auto& rows = m_rows.rows();
    const auto row = std::find_if(rows.begin(), rows.end(), [&holds](const HitsRow& one) {
        return std::any_of(one.cards.begin(), one.cards.end(),
                           [&holds](const Card& card) { return holds(card.hit); });
    });
    Q_EMIT revealed(static_cast<int>(row - rows.begin()));
}

void HitsPage::openAll() {
    regroup();
    for (const JourneyGroup& journey : std::as_const(m_journeys))
        m_layout.open.insert(journey.id);
    layOut();
}

void HitsPage::toggle(const QString& journey) {
    if (!m_layout.open.remove(journey))
        m_layout.open.insert(journey);
    layOut();
}

int HitsPage::nextStop(int row, int step) const {
    const auto& rows = m_rows.rows();
    const int direction = step < 0 ? -1 : 1;
    for (int next = row + direction; next >= 0 && next < rows.size(); next += direction) {
        const HitsRow::Kind kind = rows[next].kind;
        if (kind == HitsRow::Kind::journey || kind == HitsRow::Kind::cards)
            return next;
    }
    return row;
}

void HitsPage::book(int row, int column) {
    const Match* offer = m_rows.offer(row, column);
    const auto address = offer ? m_rows.bookingAddress(*offer) : std::nullopt;
    if (address && !m_desktop.open(*address))
        say(u"Fant ingen nettleser som kunne åpne siden."_s);
}

void HitsPage::copy(int row, int column) {
    const Match* offer = m_rows.offer(row, column);
    if (!offer)
        return;
    m_desktop.copy(Export::text(*offer, m_site));
    say(u"Treffet er kopiert."_s);
}

void HitsPage::exportJourney(const QString& journey) {
    const auto group =
        std::find_if(m_journeys.begin(), m_journeys.end(),
                     [&journey](const JourneyGroup& one) { return one.id == journey; });
    if (group != m_journeys.end())
        save(Export::fileName(group->title, u"ics"_s),
             Export::calendar(*group, m_site, m_clock.now()));
}

void HitsPage::exportTable() {
    save(Export::fileName(u"Tindra treff "_s + DateFmt::iso(m_clock.today()), u"csv"_s),
         MatchTable::csv(m_filtered, m_site));
}

void HitsPage::save(const QString& name, const QByteArray& content) {
    const auto path = m_desktop.download(name, content);
    say(path ? u"Lagret i %1"_s.arg(*path) : u"Filen kunne ikke lagres."_s);
}

void HitsPage::setShown(bool shown) {
    if (std::exchange(m_shown, shown) == shown)
        return;
    m_minute.reset();
    if (shown) {
        if (m_isStale)
            regroup();
        else
            m_rows.refreshAges();
        startMinute();
        m_state.refreshCommunity();
    }
    Q_EMIT shownChanged();
}

void HitsPage::startMinute() {
    m_minute = m_clock.after(1min, [this] {
        m_rows.refreshAges();
        startMinute();
    });
}
