// SPDX-License-Identifier: MIT
#pragma once

#include "standin/Inventory.h"

#include <QByteArray>

namespace standin {

/// Answer of the ordinary offer endpoint: a JSON object whose `outboundFlights` maps flight keys to
/// the airline's own flights; products for points are named "... BONUS".
/// `bytes`: pads the answer to about this size with further conditions of each product; 0 leaves
/// it as it is, and an answer that is already larger is not cut.
QByteArray offersAnswer(const QList<Flight>& flights, qsizetype bytes = 0);

/// Answer of the award endpoint: a JSON object whose `outboundFlights` is a list of the airline's
/// and its partners' flights. `bytes` as above.
QByteArray awardAnswer(const QList<Flight>& flights, qsizetype bytes = 0);

} // namespace standin
