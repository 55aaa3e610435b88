// SPDX-License-Identifier: MIT
#include "ui/watchers/WatchersSection.h"

#include "app/AppState.h"
#include "core/Norwegian.h"
#include "core/WatcherStore.h"
#include "polling/Worker.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

WatchersSection::WatchersSection(AppState& state, Worker& worker, WatcherStore& store, Clock& clock)
    : m_state(state)
    , m_worker(worker)
    , m_store(store)
    , m_clock(clock)
    , m_activity(worker, clock)
    , m_lastCheck(state) {
    connect(&state, &AppState::searchesChanged, this, &WatchersSection::refresh);
    connect(&state, &AppState::matchCountsChanged, this, &WatchersSection::refresh);
    connect(&worker, &Worker::changed, this, &WatchersSection::changed);
    refresh();
}

void WatchersSection::refresh() {
    show(m_state.searches());
}

void WatchersSection::show(const QList<Search>& watchers) {
    QList<WatcherCard> cards;
    for (const Search& search : watchers)
        cards.append(WatcherCard::of(search, m_state.matchCounts().value(search.id), m_clock));
    m_cards.update(cards);
    Q_EMIT changed();
}

void WatchersSection::setShown(bool shown) {
    if (std::exchange(m_isShown, shown) == shown)
        return;
    m_minute.reset();
    if (shown)
        keepTime();
    Q_EMIT shownChanged();
}

void WatchersSection::keepTime() {
    refresh();
    m_minute = m_clock.after(1min, [this] { keepTime(); });
}

int WatchersSection::active() const {
    const auto& cards = m_cards.cards();
    return static_cast<int>(std::count_if(
        cards.begin(), cards.end(), [](const WatcherCard& card) { return card.search.enabled; }));
}

QString WatchersSection::activeText() const {
    return Norwegian::number(active()) + u" aktive"_s;
}

bool WatchersSection::isEmpty() const {
    return m_cards.cards().isEmpty();
}

bool WatchersSection::canCheck() const {
    return isActive() && !m_worker.isRunning() && !m_isBeginning;
}

void WatchersSection::checkAll() {
    if (!canCheck())
        return;
    m_isBeginning = true;
    Q_EMIT changed();
    m_worker.pollOnce().then([self = QPointer(this)](const PollSummary& summary) {
        if (!self)
            return;
        self->m_isBeginning = false;
        Q_EMIT self->changed();
        // There has been no round, so no strip will tell.
        const auto reason = self->m_worker.whyNoRound();
        if (summary.searches == 0 && reason)
            Q_EMIT self->refused(*reason);
    });
}

void WatchersSection::toggle(qint64 id) {
    // The state follows a moment later, and until then the switch would swing back.
    if (m_store.toggleSearch(id))
        show(m_store.listSearches());
}

void WatchersSection::setWatching(qint64 id, bool on) {
    const WatcherCard* card = m_cards.find(id);
    if (card && card->search.enabled != on)
        toggle(id);
}

void WatchersSection::rename(qint64 id, const QString& name) {
    m_store.renameSearch(id, name);
}

void WatchersSection::remove(qint64 id) {
    const WatcherCard* card = m_cards.find(id);
    const QString name = card ? card->quotedTitle() : QString();
    m_canUndo = m_store.takeSearch(id);
    if (m_canUndo)
        Q_EMIT removed(u"Overvåkeren «%1» er slettet"_s.arg(name));
}

void WatchersSection::undoRemove() {
    if (!m_canUndo)
        return;
    m_canUndo = !m_store.restoreSearch();
    if (m_canUndo)
        Q_EMIT removed(u"Overvåkeren kunne ikke legges tilbake. Prøv igjen."_s);
}

void WatchersSection::edit(qint64 id) {
    if (const WatcherCard* card = m_cards.find(id))
        openSheet(card->search, EditedWindows::of(card->search, m_clock.today()));
}

void WatchersSection::editMoved(qint64 id) {
    if (const WatcherCard* card = m_cards.find(id))
        openSheet(card->search, EditedWindows::moved(card->search, m_clock.today()));
}

void WatchersSection::openSheet(const Search& watcher, const EditedWindows& windows) {
    if (m_sheet)
        return;
    m_sheet = new EditWatcherSheet(m_store, m_clock, watcher, windows, this);
    Q_EMIT sheetChanged();
}

void WatchersSection::closeSheet() {
    // It may be the one that has asked for it.
    if (EditWatcherSheet* old = std::exchange(m_sheet, nullptr))
        old->deleteLater();
    Q_EMIT sheetChanged();
}
