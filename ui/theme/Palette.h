// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

/// The named colours in one of their two modes.
struct Palette {
    QColor window;
    QColor card;
    QColor panel;
    QColor panelText;
    QColor brand;
    QColor accent;
    QColor success;
    QColor successBg;
    QColor danger;
    QColor warn;
    QColor peach;
    QColor text;
    QColor textSecondary;
    QColor textTertiary;
    QColor hairline;
    /// The ground of fields and quiet boxes on a card.
    QColor field;
    /// The ground of the sidebar.
    QColor sidebar;
    /// The ground of short messages over a page, with `panelText` on it.
    QColor raised;
    /// Text on `brand`.
    QColor onBrand;
    /// Text on `accent`.
    QColor onAccent;

    bool operator==(const Palette&) const = default;

    static const Palette& light();
    static const Palette& dark();
};
