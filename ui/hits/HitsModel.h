// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "ui/hits/HitsRows.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

class Clock;
struct TripCard;

/// The rows of the hits page. New rows come in by the smallest change, so that whoever looks at
/// the list keeps their place; texts are made when they are shown.
class HitsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("part of the page")
public:
    enum Role {
        /// "region", "journey", "direction" or "cards".
        KindRole = Qt::UserRole,
        JourneyRole,
        TitleRole,
        CountRole,
        /// Statistics of a journey; empty where they do not apply.
        SoldOutRole,
        CheapestRole,
        DatesRole,
        IsOpenRole,
        IsLastRole,
        /// List of TripCard.
        CardsRole,
        /// List of TripAge, in the cards' order.
        AgesRole
    };

    /// The clock must outlive the model.
    HitsModel(const Clock& clock, Site site, QObject* parent = nullptr);

    const QList<HitsRow>& rows() const { return m_rows; }
    void setRows(QList<HitsRow> rows);
    /// Has the ages of all cards told anew.
    void refreshAges();

    /// The offer of a card; null when there is none, or only the record that it has gone.
    const Match* offer(int row, int column) const;
    /// The address where an offer can be booked; absent when it may not be opened.
    std::optional<QUrl> bookingAddress(const Match& match) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    TripCard tripCard(const Card& card) const;

    const Clock& m_clock;
    Site m_site;
    QList<HitsRow> m_rows;
};
