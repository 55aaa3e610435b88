// SPDX-License-Identifier: MIT
#include "bench/kills/Ledger.h"

#include "platform/linux/LinuxClock.h"
#include "polling/Notifier.h"
#include "tests/support/FakeNotificationCenter.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

/// As the program itself words it.
class Wording {
public:
    QString of(Match match) {
        // Nothing is to be marked as told.
        match.id = 0;
        FakeNotificationCenter desktop;
        // One of its own for each, since none is repeated.
        Notifier notifier(m_database, desktop, m_clock);
        notifier.notifyNewFare(match);
        return Ledger::text(desktop.posted.value(0).title, desktop.posted.value(0).body);
    }

private:
    QTemporaryDir m_folder;
    LinuxClock m_clock;
    Database m_database{m_folder.path(), m_clock};
};

QString about(const Match& match) {
    return u"watcher %1, %2"_s.arg(QString::number(match.searchId), match.offer().text());
}

/// Of a row that is one.
template<typename Row>
const Match& offerOf(const Row& row) {
    return std::get<Match>(row.hit);
}

} // namespace

QString Ledger::text(const QString& summary, const QString& body) {
    return summary + u'\n' + body;
}

void Ledger::noteTold(int run, const QString& text) {
    m_told[text].append(run);
}

void Ledger::noteStored(int run, Database& database) {
    QSet<qint64> stored;
    for (const Hit& hit : database.offers().recentMatches(std::numeric_limits<int>::max())) {
        const qint64 id = std::visit([](const auto& one) { return one.id; }, hit);
        stored.insert(id);
        if (!m_rows.contains(id))
            m_rows.insert(id, {hit, run});
    }
    m_gone = std::count_if(m_rows.keyBegin(), m_rows.keyEnd(),
                           [&stored](qint64 id) { return !stored.contains(id); });
    m_cutShort += database.offers().untold().isEmpty() ? 0 : 1;
    m_seen.clear();
    for (const Search& watcher : database.watchers().listSearches())
        m_seen.insert(watcher.id, database.seen().seenCabins(watcher.id));
}

Ledger::Account Ledger::account() const {
    Account account;
    account.lost = m_gone;
    if (m_gone > 0)
        account.complaints.append(u"stored, and gone again: %1"_s.arg(m_gone));
    account.cutShort = m_cutShort;
    for (const Row& row : m_rows)
        ++(Hits::isSoldOut(row.hit) ? account.soldOuts : account.finds);
    compareWithSeen(account);
    compareWithTold(account);
    return account;
}

/// Goes through what was stored, and comes out at what the watchers have seen, if all is well.
void Ledger::compareWithSeen(Account& account) const {
    QMap<qint64, QMap<FareKey, CabinSet>> open;
    for (const Row& row : m_rows) {
        CabinSet& cabins = open[Hits::searchId(row.hit)][Hits::key(row.hit)];
        if (const auto* gone = std::get_if<SoldOut>(&row.hit)) {
            cabins = cabins - gone->cabins;
            continue;
        }
        const auto& match = std::get<Match>(row.hit);
        if (cabins.contains(match.cabin)) {
            ++account.storedTwice;
            account.complaints.append(u"stored twice: "_s + about(match));
        }
        cabins.insert(match.cabin);
    }
    for (auto watcher = m_seen.begin(); watcher != m_seen.end(); ++watcher) {
        for (auto fare = watcher->begin(); fare != watcher->end(); ++fare) {
            const CabinSet unstored = fare->cabins - open[watcher.key()].take(fare.key());
            for (const Cabin cabin : unstored) {
                ++account.lost;
                account.complaints.append(u"seen, not stored: "_s +
                                          OfferId{fare.key(), cabin}.text());
            }
        }
    }
    // What is left was stored, but would be found anew.
    for (const auto& ofWatcher : std::as_const(open)) {
        for (auto fare = ofWatcher.begin(); fare != ofWatcher.end(); ++fare) {
            for (const Cabin cabin : *fare) {
                ++account.lost;
                account.complaints.append(u"stored, not seen: "_s +
                                          OfferId{fare.key(), cabin}.text());
            }
        }
    }
}

void Ledger::compareWithTold(Account& account) const {
    Wording wording;
    QHash<QString, QList<const Row*>> found;
    for (const Row& row : m_rows) {
        if (const auto* match = std::get_if<Match>(&row.hit))
            found[wording.of(*match)].append(&row);
    }
    for (auto one = found.begin(); one != found.end(); ++one) {
        QMap<int, int> told;
        for (const int run : m_told.value(one.key()))
            ++told[run];
        // What is stored and not told yet, by what it is about.
        QHash<OfferId, const Row*> waiting;
        qsizetype next = 0;
        int lastTold = 0;
        QMap<int, int> runs = told;
        for (const Row* row : *one)
            runs.insert(row->run, 0);
        for (const int run : runs.keys()) {
            for (; next < one->size() && one->at(next)->run <= run; ++next)
                waiting.insert(offerOf(*one->at(next)).offer(), one->at(next));
            const int times = told.value(run);
            if (times == 0)
                continue;
            const qsizetype more = std::max<qsizetype>(0, times - waiting.size());
            account.toldTwice += more;
            if (more > 0)
                account.complaints.append(u"told twice: %1, told in run %2 and again in run %3"_s
                                              .arg(about(offerOf(*one->first())))
                                              .arg(lastTold)
                                              .arg(run));
            lastTold = run;
            waiting.clear();
        }
        account.unsaid += waiting.size();
        for (const Row* row : std::as_const(waiting))
            account.complaints.append(
                u"unsaid: %1, stored in run %2"_s.arg(about(offerOf(*row))).arg(row->run));
    }
    for (auto one = m_told.begin(); one != m_told.end(); ++one) {
        if (!found.contains(one.key())) {
            ++account.lost;
            account.complaints.append(u"told, not stored: "_s + one.key().section(u'\n', 0, 1));
        }
    }
}
