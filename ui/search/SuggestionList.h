// SPDX-License-Identifier: MIT
#pragma once

#include "airports/Airports.h"

#include <QAbstractListModel>

/// The airports that a field suggests, best first.
class SuggestionList : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { CodeRole = Qt::UserRole, CityRole };

    using QAbstractListModel::QAbstractListModel;

    const QList<Airports::Airport>& suggestions() const { return m_suggestions; }
    void setSuggestions(const QList<Airports::Airport>& suggestions);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<Airports::Airport> m_suggestions;
};
