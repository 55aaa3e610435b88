// SPDX-License-Identifier: MIT
#pragma once

#include "core/Match.h"
#include "core/Search.h"

#include <QList>

/// Rules about offers and watchers. Pure functions.
namespace Matching {

/// Whether an offer, found by anybody, is what at least one of the watchers asks for: route and
/// direction, cabin, travel date, seats where both sides name them, and stops. Paused watchers
/// count like others; the caller chooses whom to ask.
bool matchesAWatcher(const Match& match, const QList<Search>& searches);

} // namespace Matching
