// SPDX-License-Identifier: MIT
#include "ui/hits/HitsRows.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class Builder {
public:
    Builder(const HitsLayout& layout, const DirectionOf& direction)
        : m_layout(layout), m_direction(direction) {}

    void addRegion(Airports::Region region) {
        HitsRow row;
        row.id = u"region:%1"_s.arg(static_cast<int>(region));
        row.title = Airports::label(region);
        m_rows.append(std::move(row));
    }

    void addJourney(const JourneyGroup& group) {
        HitsRow row = start(HitsRow::Kind::journey, group, {});
        row.title = group.title;
        row.count = group.activeCount();
        row.soldOut = group.soldOutCount();
        row.cheapest = group.cheapest();
        row.dates = group.dateSpan().value_or(QString());
        row.isOpen = m_layout.open.contains(group.id);
        const bool isOpen = row.isOpen;
        m_rows.append(std::move(row));
        if (isOpen) {
            addDirection(group, u"UTREISE"_s, group.out);
            addDirection(group, u"HJEMREISE"_s, group.ret);
        }
        m_rows.last().isLast = true;
    }

    QList<HitsRow> rows() { return std::move(m_rows); }

private:
    static HitsRow start(HitsRow::Kind kind, const JourneyGroup& group, const QString& id) {
        HitsRow row;
        row.kind = kind;
        row.id = group.id + u':' + id;
        row.journey = group.id;
        return row;
    }

    void addDirection(const JourneyGroup& group, const QString& title, const QList<Hit>& hits) {
        if (hits.isEmpty())
            return;
        HitsRow heading = start(HitsRow::Kind::direction, group, title);
        heading.title = title;
        heading.count = static_cast<int>(hits.size());
        // Only the first heading of a journey offers what concerns all of it.
        heading.isOpen = m_rows.last().kind == HitsRow::Kind::journey && group.activeCount() > 0;
        m_rows.append(std::move(heading));
        for (qsizetype first = 0; first < hits.size(); first += m_layout.columns) {
            HitsRow row = start(HitsRow::Kind::cards, group, title + QString::number(first));
            const qsizetype end = std::min<qsizetype>(first + m_layout.columns, hits.size());
            for (qsizetype i = first; i < end; ++i)
                row.cards.append(card(hits[i]));
            m_rows.append(std::move(row));
        }
    }

    Card card(const Hit& hit) const {
        const auto* match = std::get_if<Match>(&hit);
        return {hit, match ? m_direction(*match) : std::nullopt};
    }

    const HitsLayout& m_layout;
    const DirectionOf& m_direction;
    QList<HitsRow> m_rows;
};

} // namespace

QList<HitsRow> hitsRows(const QList<JourneyGroup>& journeys, const HitsLayout& layout,
                        const DirectionOf& direction) {
    Builder builder(layout, direction);
    if (layout.hasRegions) {
        const auto sections = Journeys::regionSections(journeys);
        for (const auto& [region, groups] : sections) {
            builder.addRegion(region);
            for (const JourneyGroup& group : groups)
                builder.addJourney(group);
        }
    } else {
        for (const JourneyGroup& group : journeys)
            builder.addJourney(group);
    }
    return builder.rows();
}
