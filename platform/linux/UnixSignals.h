// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>
#include <initializer_list>
#include <memory>

/// Calls back from the event loop when one of some signals arrives, instead of ending the program.
/// One object at a time.
class UnixSignals {
public:
    UnixSignals(std::initializer_list<int> signalNumbers, std::function<void()> onSignal);
    ~UnixSignals();
    Q_DISABLE_COPY_MOVE(UnixSignals)

private:
    struct Private;
    std::unique_ptr<Private> d;
};
