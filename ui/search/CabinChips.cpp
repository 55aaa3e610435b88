// SPDX-License-Identifier: MIT
#include "ui/search/CabinChips.h"

CabinChips::CabinChips(CabinSet cabins, QObject* parent)
    : QAbstractListModel(parent), m_cabins(cabins) {}

void CabinChips::setCabins(CabinSet cabins) {
    if (m_cabins == cabins)
        return;
    m_cabins = cabins;
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {IsChosenRole});
}

void CabinChips::toggle(int row) {
    CabinSet cabins = m_cabins;
    const Cabin cabin = allCabins.at(static_cast<size_t>(row));
    if (cabins.contains(cabin))
        cabins.remove(cabin);
    else
        cabins.insert(cabin);
    setCabins(cabins);
}

int CabinChips::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(allCabins.size());
}

QVariant CabinChips::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Cabin cabin = allCabins.at(static_cast<size_t>(index.row()));
    switch (role) {
    case LabelRole:
        return label(cabin);
    case IsChosenRole:
        return m_cabins.contains(cabin);
    default:
        return {};
    }
}

QHash<int, QByteArray> CabinChips::roleNames() const {
    return {{LabelRole, "label"}, {IsChosenRole, "isChosen"}};
}
