// SPDX-License-Identifier: MIT
#include "ui/hits/Journeys.h"

#include "airports/Airports.h"

#include <QHash>
#include <QMap>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype codeLength = 3;

struct Pair {
    Route codes;
    QString directed;
};

struct Bucket {
    QList<const Hit*> hits;
    QList<Pair> pairs;
};

/// Sorted by pointer: a hit is a big value to move about.
QList<Hit> sorted(QList<const Hit*> hits, Journeys::CardOrder order) {
    std::stable_sort(hits.begin(), hits.end(), [order](const Hit* a, const Hit* b) {
        return order == Journeys::CardOrder::travel ? Hits::key(*a).date < Hits::key(*b).date
                                                    : Hits::foundAt(*a) > Hits::foundAt(*b);
    });
    QList<Hit> result;
    result.reserve(hits.size());
    for (const Hit* hit : hits)
        result.append(*hit);
    return result;
}

/// The hit that says which direction is out.
qsizetype anchorOf(const QList<const Hit*>& hits, const Journeys::IsOutbound& isOutbound) {
    const auto index = [&hits](auto&& test) {
        return std::find_if(hits.begin(), hits.end(),
                            [&test](const Hit* hit) {
                                const auto* match = std::get_if<Match>(hit);
                                return match && test(*match);
                            }) -
               hits.begin();
    };
    const qsizetype outbound = index(isOutbound);
    if (outbound < hits.size())
        return outbound;
    const qsizetype active = index([](const Match&) { return true; });
    return active < hits.size() ? active : 0;
}

JourneyGroup journey(const QString& id, const Bucket& bucket, Journeys::CardOrder order,
                     const Journeys::IsOutbound& isOutbound) {
    const qsizetype anchorIndex = anchorOf(bucket.hits, isOutbound);
    const auto* anchor = std::get_if<Match>(bucket.hits[anchorIndex]);
    const Pair& pair = bucket.pairs[anchorIndex];
    QList<const Hit*> out;
    QList<const Hit*> ret;
    for (qsizetype i = 0; i < bucket.hits.size(); ++i)
        (bucket.pairs[i].directed == pair.directed ? out : ret).append(bucket.hits[i]);

    const auto name = [anchor](const QString Match::* city, const QString& code) {
        return anchor && !(anchor->*city).isEmpty() ? anchor->*city : code;
    };
    const QString from = name(&Match::fromCity, pair.codes.origin);
    const QString to = name(&Match::toCity, pair.codes.destination);
    JourneyGroup group;
    group.id = id;
    group.title = from + (ret.isEmpty() ? u" → "_s : u" ⇄ "_s) + to;
    group.region =
        std::min(Airports::region(pair.codes.origin), Airports::region(pair.codes.destination));
    group.out = sorted(std::move(out), order);
    group.ret = sorted(std::move(ret), order);
    return group;
}

} // namespace

namespace Journeys {

QList<Hit> filtered(const QList<Hit>& matches, const QList<Match>& communityHits,
                    const Filter& filter) {
    QList<Hit> result = matches;
    if (!filter.watcher)
        std::copy(communityHits.begin(), communityHits.end(), std::back_inserter(result));
    if (filter.watcher || filter.hideSoldOut) {
        result.removeIf([&filter](const Hit& hit) {
            return (filter.watcher && Hits::searchId(hit) != *filter.watcher) ||
                   (filter.hideSoldOut && Hits::isSoldOut(hit));
        });
    }
    return result;
}

std::optional<Route> pairCodes(const Hit& hit) {
    const Route& route = Hits::key(hit).route;
    const bool isPair = route.origin.size() == codeLength && route.destination.size() == codeLength;
    return isPair ? std::optional(route) : std::nullopt;
}

QString pairKey(const Route& codes) {
    const QString from = Airports::metro(codes.origin);
    const QString to = Airports::metro(codes.destination);
    return std::min(from, to) + u'|' + std::max(from, to);
}

QString pairKeyDirected(const Route& codes) {
    return Airports::metro(codes.origin) + u'>' + Airports::metro(codes.destination);
}

QList<JourneyGroup> grouped(const QList<Hit>& hits, SortOrder sortOrder, CardOrder cardOrder,
                            const IsOutbound& isOutbound) {
    // Sorted by key, which is the order of what compares equal later.
    QMap<QString, Bucket> buckets;
    QList<const Hit*> others;
    // Many hits share few code pairs, and looking a pair up takes a while.
    struct Known {
        QString key;
        Pair pair;
    };
    QHash<Route, Known> known;
    for (const Hit& hit : hits) {
        const auto codes = pairCodes(hit);
        if (!codes) {
            others.append(&hit);
            continue;
        }
        auto entry = known.constFind(*codes);
        if (entry == known.cend())
            entry = known.insert(*codes, {pairKey(*codes), {*codes, pairKeyDirected(*codes)}});
        Bucket& bucket = buckets[entry->key];
        bucket.hits.append(&hit);
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
