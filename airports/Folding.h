// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

#include <limits>

namespace Airports {

/// The text as it is compared when case and accents do not count: in lower case, without
/// diacritical marks, and with the letters that Unicode does not decompose written in plain ones
/// (ø as o, æ as ae, ß as ss, ł as l, đ as d, ı as i). "Tromsø" gives "tromso".
QString folded(QStringView text);

/// The same, but reading may stop as soon as the result is known to be longer than `enough`
/// UTF-16 units; a longer result says no more than that. Keeps the cost of an endless text small.
QString foldedUpTo(QStringView text, qsizetype enough);

} // namespace Airports
