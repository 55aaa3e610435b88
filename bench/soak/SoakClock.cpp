// SPDX-License-Identifier: MIT
#include "bench/soak/SoakClock.h"

#include <QDateTime>

#include <algorithm>

class SoakClock::SoakTimer final : public Clock::Timer {
public:
    SoakTimer(SoakClock& clock, Entry* entry) : m_clock(clock), m_entry(entry) {
        clock.m_entries.append(entry);
        clock.schedule();
    }
    ~SoakTimer() override {
        m_clock.m_entries.removeOne(m_entry);
        delete m_entry;
    }
    Q_DISABLE_COPY_MOVE(SoakTimer)

private:
    SoakClock& m_clock;
    Entry* m_entry;
};

SoakClock::SoakClock(QTime start) : m_lastCall(m_real.ticks()) {
    const QDateTime first(m_real.today(), start);
    m_aheadSeconds = static_cast<double>(first.toSecsSinceEpoch()) - secondsSince1970(m_real.now());
    m_wake.setSingleShot(true);
    m_wake.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_wake, &QTimer::timeout, &m_wake, [this] { callDue(); });
}

SoakClock::~SoakClock() = default;

Instant SoakClock::now() const {
    return m_real.now() + Ticks(m_aheadSeconds);
}

Ticks SoakClock::ticks() const {
    return m_real.ticks() + Ticks(m_aheadSeconds);
}

QDate SoakClock::today() const {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSince1970(now()))).date();
}

std::unique_ptr<Clock::Timer> SoakClock::after(std::chrono::milliseconds delay,
                                               std::function<void()> call) {
    return std::make_unique<SoakTimer>(*this, new Entry{ticks() + delay, std::move(call)});
}

SoakClock::Entry* SoakClock::next() const {
    const auto first = std::min_element(
        m_entries.begin(), m_entries.end(),
        [](const Entry* one, const Entry* other) { return one->due < other->due; });
    return first == m_entries.end() ? nullptr : *first;
}

void SoakClock::skip() {
    if (const Entry* first = next())
        m_aheadSeconds = m_aheadSeconds + std::max(0.0, (first->due - ticks()).count());
    schedule();
}

void SoakClock::schedule() {
    const Entry* first = next();
    if (!first)
        return;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(first->due - ticks());
    m_wake.start(std::max(left, std::chrono::milliseconds(0)));
}

void SoakClock::callDue() {
    Entry* first = next();
    if (first && first->due <= ticks()) {
        m_lastCall = m_real.ticks();
        // Taken off before it is called: it may start the next one, or delete its timer.
        m_entries.removeOne(first);
        const auto call = std::move(first->call);
        call();
    }
    schedule();
}
