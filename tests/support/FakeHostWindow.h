// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HostWindow.h"

/// A window that only remembers whether it is shown.
class FakeHostWindow final : public HostWindow {
    Q_OBJECT
public:
    void show(Activation itsActivation) override {
        ++shows;
        visible = true;
        activation = itsActivation;
    }
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }
    void setReason(const QString& itsReason) override { reason = itsReason; }

    bool visible = false;
    int shows = 0;
    Activation activation = Activation::leaveFocus;
    QString reason;
};
