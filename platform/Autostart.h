// SPDX-License-Identifier: MIT
#pragma once

/// Whether the desktop starts Tindra when the user signs in to the machine.
class Autostart {
public:
    virtual ~Autostart() = default;

    virtual bool isOn() const = 0;
    /// False when the desktop's own settings could not be changed.
    virtual bool setOn(bool on) = 0;
};
