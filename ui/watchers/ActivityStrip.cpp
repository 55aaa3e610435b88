// SPDX-License-Identifier: MIT
#include "ui/watchers/ActivityStrip.h"

#include "core/Norwegian.h"
#include "polling/Worker.h"

using namespace Qt::StringLiterals;

ActivityStrip::ActivityStrip(const Worker& worker, const Clock& clock, QObject* parent)
    : QObject(parent), m_worker(worker), m_clock(clock) {
    connect(&worker, &Worker::changed, this, &ActivityStrip::follow);
    follow();
}

void ActivityStrip::follow() {
    if (!m_worker.isRunning()) {
        m_pace.reset();
        m_minutesLeft.reset();
    } else {
        if (!m_pace)
            m_pace.emplace();
        m_pace->note(m_worker.planned(), m_worker.progress().done, m_worker.lookupDone(),
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
