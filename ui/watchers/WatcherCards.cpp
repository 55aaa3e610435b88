// SPDX-License-Identifier: MIT
#include "ui/watchers/WatcherCards.h"

#include <algorithm>

void WatcherCards::update(const QList<WatcherCard>& cards) {
    const auto idOf = [](const WatcherCard& card) { return card.search.id; };
    int row = 0;
    for (const WatcherCard& card : cards) {
        while (row < m_cards.size() && idOf(m_cards[row]) < idOf(card)) {
            beginRemoveRows({}, row, row);
            m_cards.removeAt(row);
            endRemoveRows();
        }
        if (row == m_cards.size() || idOf(m_cards[row]) != idOf(card)) {
            beginInsertRows({}, row, row);
            m_cards.insert(row, card);
            endInsertRows();
        } else if (m_cards[row] != card) {
            m_cards[row] = card;
            Q_EMIT dataChanged(index(row), index(row));
        }
        ++row;
    }
    if (row < m_cards.size()) {
        beginRemoveRows({}, row, static_cast<int>(m_cards.size()) - 1);
        m_cards.resize(row);
        endRemoveRows();
    }
}

const WatcherCard* WatcherCards::find(qint64 id) const {
    const auto card = std::find_if(m_cards.begin(), m_cards.end(),
                                   [id](const WatcherCard& one) { return one.search.id == id; });
    return card == m_cards.end() ? nullptr : &*card;
}

int WatcherCards::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_cards.size());
}

QVariant WatcherCards::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const WatcherCard& card = m_cards[index.row()];
    switch (role) {
    case WatcherIdRole:
        return card.search.id;
    case NameRole:
        return card.search.name;
    case Qt::DisplayRole:
    case TitleRole:
        return card.title();
    case QuotedTitleRole:
        return card.quotedTitle();
    case SourceRole:
        return card.source();
    case RouteRole:
        return card.route();
    case OutboundRole:
        return card.outbound();
    case HomeboundRole:
        return card.homebound();
    case CabinsRole:
        return card.cabinsLabel();
    case StatusRole:
        return card.status;
    case HitsTextRole:
        return card.hitsText();
    case HasHitsRole:
        return card.hits >= 1;
    case WatchingRole:
        return card.search.enabled;
    case PastRole:
        return card.isPast;
    default:
        return {};
    }
}

QHash<int, QByteArray> WatcherCards::roleNames() const {
    return {{WatcherIdRole, "watcherId"}, {NameRole, "name"},
            {TitleRole, "title"},         {QuotedTitleRole, "quotedTitle"},
            {SourceRole, "source"},       {RouteRole, "route"},
            {OutboundRole, "outbound"},   {HomeboundRole, "homebound"},
            {CabinsRole, "cabins"},       {StatusRole, "status"},
            {HitsTextRole, "hitsText"},   {HasHitsRole, "hasHits"},
            {WatchingRole, "watching"},   {PastRole, "past"}};
}
