// SPDX-License-Identifier: MIT
#include "ui/hits/JourneyGroup.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

template<typename Visitor>
void forEach(const JourneyGroup& group, Visitor visit) {
    std::for_each(group.out.begin(), group.out.end(), visit);
    std::for_each(group.ret.begin(), group.ret.end(), visit);
}

QString dayAndMonth(const QString& date) {
    const QStringList pieces = date.split(u'-');
    return pieces.size() == 3 ? pieces[2] + u'.' + pieces[1] : date;
}

} // namespace

int JourneyGroup::activeCount() const {
    return static_cast<int>(out.size() + ret.size()) - soldOutCount();
}

int JourneyGroup::soldOutCount() const {
    int count = 0;
    forEach(*this, [&count](const Match& match) { count += match.soldOut ? 1 : 0; });
    return count;
}

std::optional<int> JourneyGroup::cheapest() const {
    std::optional<int> least;
    forEach(*this, [&least](const Match& match) {
        if (!match.soldOut && match.points >= 1)
            least = std::min(least.value_or(match.points), match.points);
    });
    return least;
}

std::optional<Instant> JourneyGroup::newest() const {
    std::optional<Instant> latest;
    forEach(*this, [&latest](const Match& match) {
        latest = std::max(latest.value_or(match.foundAt), match.foundAt);
    });
    return latest;
}

std::optional<QString> JourneyGroup::dateSpan() const {
    QString first;
    QString last;
    forEach(*this, [&first, &last](const Match& match) {
        if (match.soldOut || match.travelDate.isEmpty())
            return;
        if (first.isEmpty() || match.travelDate < first)
            first = match.travelDate;
        if (match.travelDate > last)
            last = match.travelDate;
    });
    if (first.isEmpty())
        return std::nullopt;
    return first == last ? dayAndMonth(first) : dayAndMonth(first) + u" – "_s + dayAndMonth(last);
}
