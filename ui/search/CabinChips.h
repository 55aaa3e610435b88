// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

/// The four cabins to choose from, from the back of the aircraft to the front. Any number may be
/// chosen, also none.
class CabinChips : public QAbstractListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(CabinChipsModel)
    QML_UNCREATABLE("made by the screen's view-model")

public:
    enum Role { LabelRole = Qt::UserRole, IsChosenRole };

    explicit CabinChips(CabinSet cabins = usual(), QObject* parent = nullptr);

    /// What is chosen; texts that are no cabin stay as they were given.
    const CabinSet& cabins() const { return m_cabins; }
    void setCabins(const CabinSet& cabins);
    /// What a watcher stores: what is chosen, or business where nothing is.
    CabinSet cabinsToStore() const { return m_cabins.isEmpty() ? usual() : m_cabins; }
    Q_INVOKABLE void toggle(int row);

    static CabinSet usual() { return {rawValue(Cabin::business)}; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    CabinSet m_cabins;
};
