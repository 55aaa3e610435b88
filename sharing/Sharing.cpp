// SPDX-License-Identifier: MIT
#include "sharing/Sharing.h"

#include "polling/Worker.h"
#include "sharing/Community.h"
#include "sharing/OthersFinds.h"

#include <QPointer>

Sharing::Sharing(Worker& worker, Community& community, OthersFinds& finds, Clock& clock)
    : m_community(community), m_finds(finds), m_clock(clock) {
    connect(&worker, &Worker::soldOut, this, [this](const SoldOut& record) {
        start(m_community.reportSoldOut(record.key, record.cabins));
    });
    connect(&worker, &Worker::matchFound, this,
            [this](const Match& match) { m_found.append(match); });
    connect(&worker, &Worker::stored, this, &Sharing::shareFound);
    connect(&worker, &Worker::roundEnded, this, [this] {
        shareFound();
        start(m_finds.refresh());
    });
}

void Sharing::shareFound() {
    if (!m_found.isEmpty())
        start(m_community.report(std::exchange(m_found, {})));
}

void Sharing::start(QCoro::Task<> exchange) {
    ++m_underWay;
    exchange.then([self = QPointer(this)] {
        if (!self || --self->m_underWay > 0)
            return;
        for (const auto& end : std::exchange(self->m_waiting, {}))
            end.resolve(true);
    });
}

QCoro::Task<> Sharing::finished(std::chrono::milliseconds patience) {
    if (m_underWay == 0)
        co_return;
    const OneShot<bool> end;
    m_waiting.append(end);
    const auto timer = m_clock.after(patience, [end] { end.resolve(false); });
    co_await end;
}
