// SPDX-License-Identifier: MIT
#include "ui/search/SuggestionList.h"

void SuggestionList::setSuggestions(const QList<Airports::Airport>& suggestions) {
    if (m_suggestions == suggestions)
        return;
    beginResetModel();
    m_suggestions = suggestions;
    endResetModel();
}

int SuggestionList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_suggestions.size());
}

QVariant SuggestionList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Airports::Airport& airport = m_suggestions[index.row()];
    switch (role) {
    case CodeRole:
        return airport.code;
    case CityRole:
        return airport.city;
    default:
        return {};
    }
}

QHash<int, QByteArray> SuggestionList::roleNames() const {
    return {{CodeRole, "code"}, {CityRole, "city"}};
}
