// SPDX-License-Identifier: MIT
#include "ui/hits/HitsModel.h"

#include "core/Norwegian.h"
#include "platform/Clock.h"
#include "ui/hits/TripCard.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Which of the numbers make the longest rising run; -1 counts as none.
QList<bool> longestRisingRun(const QList<qsizetype>& numbers) {
    QList<qsizetype> tails; // index of the smallest number that a run of each length can end with
    QList<qsizetype> before(numbers.size(), -1);
    for (qsizetype i = 0; i < numbers.size(); ++i) {
        if (numbers[i] < 0)
            continue;
        const auto place = std::lower_bound(
            tails.begin(), tails.end(), numbers[i],
            [&](qsizetype tail, qsizetype number) { return numbers[tail] < number; });
        before[i] = place == tails.begin() ? -1 : *(place - 1);
        if (place == tails.end())
            tails.append(i);
        else
            *place = i;
    }
    QList<bool> isInRun(numbers.size(), false);
    for (qsizetype i = tails.isEmpty() ? -1 : tails.last(); i >= 0; i = before[i])
        isInRun[i] = true;
    return isInRun;
}

QString kindName(HitsRow::Kind kind) {
    switch (kind) {
    case HitsRow::Kind::region:
        return u"region"_s;
    case HitsRow::Kind::journey:
        return u"journey"_s;
    case HitsRow::Kind::direction:
        return u"direction"_s;
    case HitsRow::Kind::cards:
        break;
    }
    return u"cards"_s;
}

} // namespace

HitsModel::HitsModel(const Clock& clock, Site site, QObject* parent)
    : QAbstractListModel(parent), m_clock(clock), m_site(std::move(site)) {}

void HitsModel::setRows(QList<HitsRow> rows) {
    // The rows that are in both lists in the same order stay; the fewest possible others go and
    // come.
    QHash<QString, qsizetype> oldIndex;
    for (qsizetype i = 0; i < m_rows.size(); ++i)
        oldIndex.insert(m_rows[i].id, i);
    QList<qsizetype> origins;
    origins.reserve(rows.size());
    for (const HitsRow& row : std::as_const(rows))
        origins.append(oldIndex.value(row.id, -1));
    const QList<bool> stays = longestRisingRun(origins);
    QList<bool> isKept(m_rows.size(), false);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (stays[i])
            isKept[origins[i]] = true;
    }

    for (qsizetype last = m_rows.size() - 1; last >= 0; --last) {
        if (isKept[last])
            continue;
        qsizetype first = last;
        while (first > 0 && !isKept[first - 1])
            --first;
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last));
        m_rows.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (stays[i]) {
            if (m_rows[i] != rows[i]) {
                m_rows[i] = std::move(rows[i]);
                Q_EMIT dataChanged(index(static_cast<int>(i)), index(static_cast<int>(i)));
            }
            continue;
        }
        qsizetype last = i;
        while (last + 1 < rows.size() && !stays[last + 1])
            ++last;
        beginInsertRows({}, static_cast<int>(i), static_cast<int>(last));
        m_rows.insert(i, last - i + 1, HitsRow());
        std::move(rows.begin() + i, rows.begin() + last + 1, m_rows.begin() + i);
        endInsertRows();
        i = last;
    }
}

void HitsModel::refreshAges() {
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {AgesRole});
}

const Match* HitsModel::offer(int row, int column) const {
    if (row < 0 || row >= m_rows.size() || column < 0 || column >= m_rows[row].cards.size())
        return nullptr;
    return std::get_if<Match>(&m_rows[row].cards[column].hit);
}

std::optional<QUrl> HitsModel::bookingAddress(const Match& match) const {
    return m_site.bookingAddress(match.bookingURL);
}

TripCard HitsModel::tripCard(const Card& card) const {
    if (const auto* record = std::get_if<SoldOut>(&card.hit))
        return TripCard::of(*record);
    const auto& match = std::get<Match>(card.hit);
    return TripCard::of(match, card.direction, bookingAddress(match).has_value());
}

int HitsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant HitsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const HitsRow& row = m_rows[index.row()];
    QVariantList list;
    switch (role) {
    case KindRole:
        return kindName(row.kind);
    case JourneyRole:
        return row.journey;
    case TitleRole:
        return row.title;
    case CountRole:
        return row.count;
    case SoldOutRole:
        return row.soldOut > 0 ? u"%1 utsolgt"_s.arg(row.soldOut) : QString();
    case CheapestRole:
        return row.cheapest ? u"fra %1 poeng"_s.arg(Norwegian::number(*row.cheapest)) : QString();
    case DatesRole:
        return row.dates;
    case IsOpenRole:
        return row.isOpen;
    case IsLastRole:
        return row.isLast;
    case CardsRole:
        for (const Card& card : row.cards)
            list.append(QVariant::fromValue(tripCard(card)));
        return list;
    case AgesRole:
        for (const Card& card : row.cards)
            list.append(QVariant::fromValue(TripAge::of(card.hit, m_clock.now(), m_clock.today())));
        return list;
    default:
        return {};
    }
}

QHash<int, QByteArray> HitsModel::roleNames() const {
    return {{KindRole, "kind"},   {JourneyRole, "journey"}, {TitleRole, "title"},
            {CountRole, "count"}, {SoldOutRole, "soldOut"}, {CheapestRole, "cheapest"},
            {DatesRole, "dates"}, {IsOpenRole, "isOpen"},   {IsLastRole, "isLast"},
            {CardsRole, "cards"}, {AgesRole, "ages"}};
}
