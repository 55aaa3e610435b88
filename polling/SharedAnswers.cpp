// SPDX-License-Identifier: MIT
#include "polling/SharedAnswers.h"

#include <algorithm>

void SharedAnswers::offer(const Leg& leg, const QList<Fare>& fares, const QList<Search>& waiting,
                          QDate today) {
    if (std::any_of(waiting.begin(), waiting.end(),
                    [&](const Search& watcher) { return wants(watcher, leg, today); }))
        m_answers.insert(leg, fares);
}

std::optional<QList<Fare>> SharedAnswers::find(const Leg& leg) const {
    const auto answer = m_answers.constFind(leg);
    return answer == m_answers.constEnd() ? std::nullopt : std::optional(*answer);
}

bool SharedAnswers::wants(const Search& watcher, const Leg& leg, QDate today) {
    Wanted& wanted = m_wanted[watcher.id];
    if (wanted.watcher != watcher) {
        wanted.watcher = watcher;
        wanted.legs = Legs::allOf(watcher, today).value_or(Legs::All());
    }
    return wanted.legs.contains(leg);
}
