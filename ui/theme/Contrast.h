// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

/// Contrast ratio of two opaque colours, 1 to 21, as WCAG 2.1 defines it.
double contrast(const QColor& a, const QColor& b);

/// What is seen where `colour`, with its opacity, lies on an opaque `ground`.
QColor over(const QColor& colour, const QColor& ground);

/// `colour` itself where it can be read as text on the opaque `ground` (4.5:1), otherwise the
/// nearest one of its hue that can, darker on light grounds and lighter on dark ones.
QColor readable(const QColor& colour, const QColor& ground);
