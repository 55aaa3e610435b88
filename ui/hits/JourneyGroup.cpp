// SPDX-License-Identifier: MIT
#include "ui/hits/JourneyGroup.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Calls `visit` with the offers that can still be had.
template<typename Visitor>
void forEachOffer(const JourneyGroup& group, Visitor visit) {
    for (const QList<Hit>* hits : {&group.out, &group.ret}) {
        for (const Hit& hit : *hits) {
            if (const auto* match = std::get_if<Match>(&hit))
                visit(*match);
        }
    }
}

} // namespace

int JourneyGroup::activeCount() const {
    int count = 0;
    forEachOffer(*this, [&count](const Match&) { ++count; });
    return count;
}

int JourneyGroup::soldOutCount() const {
    return static_cast<int>(out.size() + ret.size()) - activeCount();
}

std::optional<int> JourneyGroup::cheapest() const {
    std::optional<int> least;
    forEachOffer(*this, [&least](const Match& match) {
        if (match.points >= 1)
            least = std::min(least.value_or(match.points), match.points);
    });
    return least;
}

std::optional<Instant> JourneyGroup::newest() const {
    std::optional<Instant> latest;
    for (const QList<Hit>* hits : {&out, &ret}) {
        for (const Hit& hit : *hits) {
            const Instant found = Hits::foundAt(hit);
            latest = std::max(latest.value_or(found), found);
        }
    }
    return latest;
}

std::optional<QString> JourneyGroup::dateSpan() const {
    QDate first;
    QDate last;
    forEachOffer(*this, [&first, &last](const Match& match) {
        const QDate date = match.travelDate();
        if (!date.isValid())
            return;
        if (!first.isValid() || date < first)
            first = date;
        if (date > last)
            last = date;
    });
    if (!first.isValid())
        return std::nullopt;
    const QString form = u"dd.MM"_s;
    return first == last ? first.toString(form)
                         : first.toString(form) + u" – "_s + last.toString(form);
}
