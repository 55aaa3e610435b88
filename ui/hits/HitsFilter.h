// SPDX-License-Identifier: MIT
#pragma once

#include "ui/hits/Journeys.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

class AppState;

/// The filter bar of "Treff": which offers are shown, and in which order. Choices last as long as
/// the object. Main thread only.
class HitsFilter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the page")
    Q_PROPERTY(QStringList watcherNames READ watcherNames NOTIFY watchersChanged)
    Q_PROPERTY(int watcherIndex READ watcherIndex WRITE setWatcherIndex NOTIFY watchersChanged)
    Q_PROPERTY(QStringList sortOrders READ sortOrders CONSTANT)
    Q_PROPERTY(int sortOrder READ sortOrder WRITE setSortOrder NOTIFY shownChanged)
    Q_PROPERTY(QStringList cardOrders READ cardOrders CONSTANT)
    Q_PROPERTY(int cardOrder READ cardOrder WRITE setCardOrder NOTIFY shownChanged)
    Q_PROPERTY(bool hideSoldOut READ hideSoldOut WRITE setHideSoldOut NOTIFY shownChanged)
public:
    /// `state` must outlive the object.
    explicit HitsFilter(AppState& state);

    const Journeys::Filter& filter() const { return m_filter; }
    Journeys::SortOrder sorting() const { return m_sortOrder; }
    Journeys::CardOrder cardSorting() const { return m_cardOrder; }

    /// "Alle overvåkere" and then every watcher's name, in the state's order.
    const QStringList& watcherNames() const { return m_watcherNames; }
    /// Index into these; 0 also when the chosen watcher has been deleted.
    int watcherIndex() const;
    void setWatcherIndex(int index);
    /// The labels, in the order of the enumerations.
    static QStringList sortOrders();
    static QStringList cardOrders();
    int sortOrder() const { return static_cast<int>(m_sortOrder); }
    void setSortOrder(int order);
    int cardOrder() const { return static_cast<int>(m_cardOrder); }
    void setCardOrder(int order);
    bool hideSoldOut() const { return m_filter.hideSoldOut; }
    void setHideSoldOut(bool hide);

    /// Shows everything again, in the order that was chosen.
    void reset();

Q_SIGNALS:
    /// Their names, or which of them is chosen.
    void watchersChanged();
    /// The user has chosen what is shown, or its order.
    void shownChanged();

private:
    void readWatchers();

    AppState& m_state;
    Journeys::Filter m_filter;
    Journeys::SortOrder m_sortOrder = Journeys::SortOrder::region;
    Journeys::CardOrder m_cardOrder = Journeys::CardOrder::travel;
    QStringList m_watcherNames;
};
