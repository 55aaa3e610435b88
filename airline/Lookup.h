// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Leg.h"
#include "airline/Outcome.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QObject>

#include <chrono>
#include <optional>

class Capture;
class SessionState;
class StandBack;

/// One look at a leg, and what it tells about everything else: whether the site is there, whether
/// it wants to be left alone, and that the session lives.
class Lookup : public QObject {
    Q_OBJECT
public:
    /// All must outlive the object.
    Lookup(Capture& capture, Clock& clock, SessionState& state, StandBack& standBack);

    /// A page that cannot be fetched is tried again for a while. Absent when the look was cut short
    /// by somebody who needs the web view.
    QCoro::Task<std::optional<Outcome>> look(Leg leg, std::chrono::milliseconds timeout);

private:
    void note(const Outcome& outcome);

    Capture& m_capture;
    Clock& m_clock;
    SessionState& m_state;
    StandBack& m_standBack;
};
