// SPDX-License-Identifier: MIT
#include "ui/watchers/ActivityStrip.h"

#include "app/AppState.h"
#include "core/Norwegian.h"
#include "polling/Legs.h"
#include "polling/Worker.h"

using namespace Qt::StringLiterals;

ActivityStrip::ActivityStrip(const AppState& state, const Worker& worker, const Clock& clock,
                             QObject* parent)
    : QObject(parent), m_state(state), m_worker(worker), m_clock(clock) {
    connect(&worker, &Worker::changed, this, &ActivityStrip::follow);
    follow();
}

void ActivityStrip::follow() {
    if (!m_worker.isRunning()) {
        m_pace.reset();
        m_minutesLeft.reset();
    } else {
        if (!m_pace) {
            // The round keeps to the watchers that were on when it began.
            QList<int> planned;
            for (const Search& watcher : m_state.searches()) {
                if (watcher.enabled)
                    planned.append(Legs::countOfRound(watcher, m_clock.today()));
            }
            const auto total = std::max(0, m_worker.progress().total);
            m_pace.emplace(planned.last(std::min<qsizetype>(total, planned.size())));
        }
        // Watchers may have been added since, and the rest of a round leaves out the first ones.
        m_pace->grow(m_worker.progress().total);
        m_pace->note(m_worker.progress().done, m_worker.lookupDone(), m_worker.lookupTotal(),
                     m_clock.ticks());
        if (const auto left = m_pace->left())
            m_minutesLeft = steadyMinutes(m_minutesLeft, *left);
    }
    Q_EMIT changed();
}

bool ActivityStrip::running() const {
    return m_worker.isRunning();
}

QString ActivityStrip::statusText() const {
    return m_worker.statusText().isEmpty() ? u"Sjekker…"_s : m_worker.statusText();
}

QString ActivityStrip::lookupsText() const {
    return lookupsText(m_worker.lookupDone(), m_worker.lookupTotal(), m_worker.rotationTotal());
}

QString ActivityStrip::lookupsText(int done, int total, int rotation) {
    if (total < 1)
        return {};
    const QString text =
        u"%1 av %2 oppslag"_s.arg(Norwegian::number(done), Norwegian::number(total));
    return rotation < 1 ? text : text + u" · roterer over "_s + Norwegian::number(rotation);
}

double ActivityStrip::fraction() const {
    return m_pace && m_pace->fraction() > 0 ? m_pace->fraction() : -1;
}

QString ActivityStrip::roundText() const {
    QStringList texts;
    if (const auto watchers = m_worker.progress(); running() && watchers.total > 1)
        texts.append(u"Overvåker %1 av %2"_s.arg(Norwegian::number(watchers.done + 1),
                                                 Norwegian::number(watchers.total)));
    if (m_minutesLeft)
        texts.append(timeLeftText(*m_minutesLeft));
    return texts.join(u" · "_s);
}
