// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Tray.h"

/// A status area that is there or not, as the test says.
class FakeTray final : public Tray {
    Q_OBJECT
public:
    bool isAvailable() const override { return isThere; }
    void show() override { isShown = true; }
    void setStatus(const QString& text) override { status = text; }

    bool isThere = true;
    bool isShown = false;
    QString status;
};
