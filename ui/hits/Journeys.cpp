// SPDX-License-Identifier: MIT
#include "ui/hits/Journeys.h"

#include "airports/Airports.h"
#include "core/DateFmt.h"

#include <QHash>
#include <QMap>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype fewestKeyPieces = 5;

struct Pair {
    QStringList codes;
    QString directed;
};

struct Bucket {
    QList<const Match*> offers;
    QList<Pair> pairs;
};

/// Sorted by pointer: an offer is a big value to move about.
QList<Match> sorted(QList<const Match*> offers, Journeys::CardOrder order) {
    std::stable_sort(offers.begin(), offers.end(), [order](const Match* a, const Match* b) {
        return order == Journeys::CardOrder::travel ? a->travelDate < b->travelDate
                                                    : a->foundAt > b->foundAt;
    });
    QList<Match> result;
    result.reserve(offers.size());
    for (const Match* offer : offers)
        result.append(*offer);
    return result;
}

/// The offer that says which direction is out.
qsizetype anchorOf(const QList<const Match*>& offers, const Journeys::IsOutbound& isOutbound) {
    const auto index = [&offers](auto&& test) {
        return std::find_if(offers.begin(), offers.end(), test) - offers.begin();
    };
    const qsizetype outbound = index([&](const Match* offer) { return isOutbound(*offer); });
    if (outbound < offers.size())
        return outbound;
    const qsizetype active = index([](const Match* offer) { return !offer->soldOut; });
    return active < offers.size() ? active : 0;
}

JourneyGroup journey(const QString& id, const Bucket& bucket, Journeys::CardOrder order,
                     const Journeys::IsOutbound& isOutbound) {
    const qsizetype anchorIndex = anchorOf(bucket.offers, isOutbound);
    const Match& anchor = *bucket.offers[anchorIndex];
    const Pair& pair = bucket.pairs[anchorIndex];
    QList<const Match*> out;
    QList<const Match*> ret;
    for (qsizetype i = 0; i < bucket.offers.size(); ++i)
        (bucket.pairs[i].directed == pair.directed ? out : ret).append(bucket.offers[i]);

    const QString from = anchor.fromCity.isEmpty() ? pair.codes.first() : anchor.fromCity;
    const QString to = anchor.toCity.isEmpty() ? pair.codes.last() : anchor.toCity;
    JourneyGroup group;
    group.id = id;
    group.title = from + (ret.isEmpty() ? u" → "_s : u" ⇄ "_s) + to;
    group.region =
        std::min(Airports::region(pair.codes.first()), Airports::region(pair.codes.last()));
    group.out = sorted(std::move(out), order);
    group.ret = sorted(std::move(ret), order);
    return group;
}

} // namespace

namespace Journeys {

QList<Match> filtered(const QList<Match>& matches, const QList<Match>& communityHits,
                      const Filter& filter) {
    QList<Match> result = filter.watcher ? matches : matches + communityHits;
    if (filter.watcher || filter.hideSoldOut) {
        result.removeIf([&filter](const Match& match) {
            return (filter.watcher && match.searchId != *filter.watcher) ||
                   (filter.hideSoldOut && match.soldOut);
        });
    }
    return result;
}

std::optional<QStringList> pairCodes(const Match& match) {
    QStringList codes;
    if (match.soldOut) {
        codes = match.key.split(u'-', Qt::SkipEmptyParts);
        if (codes.size() < fewestKeyPieces)
            return std::nullopt;
        // A fare key begins with its date; older records begin with the codes.
        const qsizetype start = DateFmt::parseIso(codes.mid(0, 3).join(u'-')) ? 3 : 0;
        codes = codes.mid(start, 2);
    } else {
        codes = match.route.split(u'-', Qt::SkipEmptyParts);
    }
    const bool isPair = codes.size() == 2 && codes[0].size() == 3 && codes[1].size() == 3;
    return isPair ? std::optional(codes) : std::nullopt;
}

QString pairKey(const QStringList& codes) {
    QStringList names;
    std::transform(codes.begin(), codes.end(), std::back_inserter(names), Airports::metro);
    names.sort();
    return names.join(u'|');
}

QString pairKeyDirected(const QStringList& codes) {
    QStringList names;
    std::transform(codes.begin(), codes.end(), std::back_inserter(names), Airports::metro);
    return names.join(u'>');
}

QList<JourneyGroup> grouped(const QList<Match>& offers, SortOrder sortOrder, CardOrder cardOrder,
                            const IsOutbound& isOutbound) {
    // Sorted by key, which is the order of what compares equal later.
    QMap<QString, Bucket> buckets;
    QList<const Match*> others;
    // Many offers share few code pairs, and looking a pair up takes a while.
    struct Known {
        QString key;
        Pair pair;
    };
    QHash<QStringList, Known> known;
    for (const Match& offer : offers) {
        const auto codes = pairCodes(offer);
        if (!codes) {
            others.append(&offer);
            continue;
        }
        auto entry = known.constFind(*codes);
        if (entry == known.cend())
            entry = known.insert(*codes, {pairKey(*codes), {*codes, pairKeyDirected(*codes)}});
        Bucket& bucket = buckets[entry->key];
        bucket.offers.append(&offer);
        bucket.pairs.append(entry->pair);
    }

    QList<JourneyGroup> journeys;
    journeys.reserve(buckets.size() + 1);
    for (auto bucket = buckets.cbegin(); bucket != buckets.cend(); ++bucket)
        journeys.append(journey(bucket.key(), *bucket, cardOrder, isOutbound));
    if (!others.isEmpty()) {
        JourneyGroup rest;
        rest.id = u"annet"_s;
        rest.title = u"Annet"_s;
        rest.out = sorted(std::move(others), CardOrder::found);
        journeys.append(std::move(rest));
    }
    std::stable_sort(journeys.begin(), journeys.end(),
                     [sortOrder](const JourneyGroup& a, const JourneyGroup& b) {
                         return order(a, b, sortOrder);
                     });
    return journeys;
}

bool order(const JourneyGroup& a, const JourneyGroup& b, SortOrder sortOrder) {
    if (sortOrder == SortOrder::cheapest) {
        constexpr int none = std::numeric_limits<int>::max();
        return a.cheapest().value_or(none) < b.cheapest().value_or(none);
    }
    // An absent instant counts as before any other.
    return a.newest() > b.newest();
}

QList<std::pair<Airports::Region, QList<JourneyGroup>>>
regionSections(const QList<JourneyGroup>& journeys) {
    QMap<Airports::Region, QList<JourneyGroup>> byRegion;
    for (const JourneyGroup& group : journeys)
        byRegion[group.region].append(group);
    QList<std::pair<Airports::Region, QList<JourneyGroup>>> sections;
    for (auto section = byRegion.cbegin(); section != byRegion.cend(); ++section)
        sections.append({section.key(), *section});
    return sections;
}

} // namespace Journeys
