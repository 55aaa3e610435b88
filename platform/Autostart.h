// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// Whether the desktop starts Tindra, without a window, when its user signs in.
class Autostart {
public:
    virtual ~Autostart() = default;

    virtual bool isOn() const = 0;
    /// Absent when it is done; else why not, in Norwegian, and nothing has changed.
    virtual std::optional<QString> setOn(bool on) = 0;
};
