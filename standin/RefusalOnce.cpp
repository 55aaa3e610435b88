// SPDX-License-Identifier: MIT
#include "standin/RefusalOnce.h"

namespace standin {

bool RefusalOnce::refuses(bool isOwnLeg) {
    const auto& refusal = m_options.refusal;
    if (!refusal)
        return false;
    if (!m_since && isOwnLeg && m_answered >= refusal->afterOffers)
        m_since = m_options.now();
    return m_since && m_options.now() < *m_since + refusal->retryAfter.count();
}

void RefusalOnce::count(const QString& leg) {
    const auto& refusal = m_options.refusal;
    if (!refusal || m_since)
        return;
    if (!refusal->countsRepeatsOnly || m_legs.contains(leg))
        ++m_answered;
    m_legs.insert(leg);
}

} // namespace standin
