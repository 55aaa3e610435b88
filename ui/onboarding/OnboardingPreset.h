// SPDX-License-Identifier: MIT
#pragma once

#include "core/Search.h"

#include <QDate>
#include <QList>

/// A first route that is ready to press.
struct OnboardingPreset {
    QString label;
    QString name;
    /// Code lists.
    QString origin;
    QString dests;

    static const QList<OnboardingPreset>& all();
};

namespace Onboarding {

/// A round trip in business, both ways from the day after `today` to 60 days ahead.
Search watcher(const QString& name, const QString& origin, const QString& dests, QDate today);

} // namespace Onboarding
