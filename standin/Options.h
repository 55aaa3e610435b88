// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

namespace standin {

/// How a stand-in site is set up; fixed for its life.
struct Options {
    quint16 port = 0;                         ///< 0 takes a free one
    quint64 seed = 1;                         ///< of the timetable and the award seats
    std::chrono::milliseconds pageDelay{150}; ///< from a page's load to its offer request
    QString stateFile{};                      ///< where looks are kept between runs; empty: nowhere
    qsizetype responseBytes = 0;              ///< pads offer answers to about this size; 0: natural
};

} // namespace standin
