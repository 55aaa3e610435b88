// SPDX-License-Identifier: MIT
#pragma once

#include "standin/Options.h"

#include <QSet>

#include <optional>

namespace standin {

/// Decides when the site refuses by itself (Options::refusal). Forgotten with the process.
class RefusalOnce {
public:
    explicit RefusalOnce(const Options& options) : m_options(options) {}

    /// Whether a request is refused now. Only one for a page's own leg begins the refusal.
    bool refuses(bool isOwnLeg);

    /// Counts an answer for a page's own leg ("OSL-BKK-20270301").
    void count(const QString& leg);

private:
    const Options& m_options;
    QSet<QString> m_legs;
    int m_answered = 0;
    std::optional<qint64> m_since; ///< seconds since 1970-01-01 00:00 UTC
};

} // namespace standin
