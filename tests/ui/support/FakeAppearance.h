// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Appearance.h"

/// A desktop that looks as it is told to.
class FakeAppearance final : public Appearance {
    Q_OBJECT
public:
    bool isDark() const override { return m_dark; }
    bool reducesMotion() const override { return m_reduced; }
    void setDark(bool dark) {
        m_dark = dark;
        Q_EMIT changed();
    }
    void setReducesMotion(bool reduced) {
        m_reduced = reduced;
        Q_EMIT changed();
    }

private:
    bool m_dark = false;
    bool m_reduced = true;
};
