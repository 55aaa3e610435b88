// SPDX-License-Identifier: MIT
#pragma once

#include "ui/watchers/WatcherCard.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqmlregistration.h>

/// The cards, one row a watcher, in ascending id. An update touches only the rows that differ, so
/// that cards keep their place, focus and open menus.
class WatcherCards : public QAbstractListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(WatcherCardsModel)
    QML_UNCREATABLE("made by WatchersSection")
public:
    enum Role {
        WatcherIdRole = Qt::UserRole,
        /// As the user typed it; empty where the title is the route.
        NameRole,
        TitleRole,
        QuotedTitleRole,
        SourceRole,
        RouteRole,
        OutboundRole,
        HomeboundRole,
        CabinsRole,
        StatusRole,
        HitsTextRole,
        HasHitsRole,
        WatchingRole,
        /// All its dates have passed.
        PastRole,
    };

    explicit WatcherCards(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    const QList<WatcherCard>& cards() const { return m_cards; }
    /// `cards` in ascending id of their watchers.
    void update(const QList<WatcherCard>& cards);
    /// Absent (null) for an id that is not shown.
    const WatcherCard* find(qint64 id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<WatcherCard> m_cards;
};
