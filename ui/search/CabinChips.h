// SPDX-License-Identifier: MIT
#pragma once

#include "core/WatcherForm.h"

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

    explicit CabinChips(CabinSet cabins = WatcherForm::usualCabins, QObject* parent = nullptr);

    CabinSet cabins() const { return m_cabins; }
    void setCabins(CabinSet cabins);
    Q_INVOKABLE void toggle(int row);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    CabinSet m_cabins;
};
