// SPDX-License-Identifier: MIT
#include "ui/hits/HitsFilter.h"

#include "app/AppState.h"

#include <algorithm>

using namespace Qt::StringLiterals;

HitsFilter::HitsFilter(AppState& state) : m_state(state) {
    connect(&state, &AppState::searchesChanged, this, &HitsFilter::readWatchers);
    readWatchers();
}

void HitsFilter::readWatchers() {
    QStringList names{u"Alle overvåkere"_s};
    bool isChosenThere = false;
    for (const Search& watcher : m_state.searches()) {
        names.append(watcher.displayName());
        isChosenThere = isChosenThere || watcher.id == m_filter.watcher;
    }
    const bool isLost = m_filter.watcher && !isChosenThere;
    if (isLost)
        m_filter.watcher.reset();
    if (std::exchange(m_watcherNames, names) != names || isLost)
        Q_EMIT watchersChanged();
}

int HitsFilter::watcherIndex() const {
    const auto& watchers = m_state.searches();
    const auto chosen = std::find_if(watchers.begin(), watchers.end(),
                                     [this](const Search& s) { return s.id == m_filter.watcher; });
    return chosen == watchers.end() ? 0 : static_cast<int>(chosen - watchers.begin()) + 1;
}

void HitsFilter::setWatcherIndex(int index) {
    const auto& watchers = m_state.searches();
    if (index == watcherIndex() || index < 0 || index > watchers.size())
        return;
    m_filter.watcher = index == 0 ? std::nullopt : std::optional(watchers[index - 1].id);
    Q_EMIT watchersChanged();
    Q_EMIT shownChanged();
}

QStringList HitsFilter::sortOrders() {
    return {u"Per region"_s, u"Nyest funnet"_s, u"Billigst"_s};
}

QStringList HitsFilter::cardOrders() {
    return {u"Avreisedato"_s, u"Nyest først"_s};
}

void HitsFilter::setSortOrder(int order) {
    if (order == sortOrder() || order < 0 || order >= sortOrders().size())
        return;
    m_sortOrder = static_cast<Journeys::SortOrder>(order);
    Q_EMIT shownChanged();
}

void HitsFilter::setCardOrder(int order) {
    if (order == cardOrder() || order < 0 || order >= cardOrders().size())
        return;
    m_cardOrder = static_cast<Journeys::CardOrder>(order);
    Q_EMIT shownChanged();
}

void HitsFilter::setHideSoldOut(bool hide) {
    if (std::exchange(m_filter.hideSoldOut, hide) != hide)
        Q_EMIT shownChanged();
}

void HitsFilter::reset() {
    m_filter = {};
    Q_EMIT watchersChanged();
    Q_EMIT shownChanged();
}
