// SPDX-License-Identifier: MIT
#include "tests/support/ManualClock.h"

#include <QCoreApplication>

#include <algorithm>

struct ManualClock::Entry {
    Ticks due;
    std::function<void()> call;
};

class ManualClock::ManualTimer final : public Clock::Timer {
public:
    ManualTimer(std::shared_ptr<QList<Entry*>> entries, Entry* entry)
        : m_entries(std::move(entries)), m_entry(entry) {
        m_entries->append(m_entry);
    }
    ~ManualTimer() override {
        m_entries->removeOne(m_entry);
        delete m_entry;
    }
    Q_DISABLE_COPY_MOVE(ManualTimer)

private:
    std::shared_ptr<QList<Entry*>> m_entries;
    Entry* m_entry;
};

ManualClock::ManualClock(QDate today)
    : m_now(instantFromSeconds(
          static_cast<double>(QDateTime(today, QTime(12, 0), Qt::UTC).toSecsSinceEpoch())))
    , m_entries(std::make_shared<QList<Entry*>>()) {}

QDate ManualClock::today() const {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSince1970(m_now)), Qt::UTC)
        .date();
}

std::unique_ptr<Clock::Timer> ManualClock::after(std::chrono::milliseconds delay,
                                                 std::function<void()> call) {
    return std::make_unique<ManualTimer>(m_entries, new Entry{m_ticks + delay, std::move(call)});
}

void ManualClock::advance(std::chrono::milliseconds time) {
    settle();
    const Ticks end = m_ticks + time;
    while (true) {
        const auto next =
            std::min_element(m_entries->begin(), m_entries->end(),
                             [](const Entry* a, const Entry* b) { return a->due < b->due; });
        if (next == m_entries->end() || (*next)->due > end)
            break;
        Entry* entry = *next;
        m_now += std::max(entry->due, m_ticks) - m_ticks;
        m_ticks = std::max(entry->due, m_ticks);
        // Taken off before it is called: it may start the next one, or delete its timer.
        m_entries->removeOne(entry);
        const auto call = std::move(entry->call);
        call();
        settle();
    }
    m_now += end - m_ticks;
    m_ticks = end;
}

void ManualClock::suspend(std::chrono::milliseconds time) {
    settle();
    m_now += time;
    m_ticks += time;
    advance({});
}

qsizetype ManualClock::waiting() const {
    return m_entries->size();
}

void settle() {
    // A coroutine resumes in a later turn of the loop, and may lead to another.
    for (int turn = 0; turn < 50; ++turn) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}
