// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

/// How often the watchers are checked, as a choice; all in minutes.
namespace CheckInterval {

/// 5, 10 and 30, and `current` among them where it is another.
QList<double> choices(double current);
/// "10 min".
QString label(double minutes);

} // namespace CheckInterval
