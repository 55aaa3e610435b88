// SPDX-License-Identifier: MIT
#include "ui/window/PanelPlacement.h"

#include <algorithm>

namespace {

constexpr int margin = 8;

/// `wanted`, moved as little as it takes to lie between the edges.
int between(int wanted, int first, int last) {
    return std::max(first, std::min(wanted, last));
}

} // namespace

QPoint panelPlacement(std::optional<QPoint> icon, const QRect& screen, QSize panel) {
    const int left = screen.left() + margin;
    const int top = screen.top() + margin;
    const int right = screen.right() + 1 - margin - panel.width();
    const int bottom = screen.bottom() + 1 - margin - panel.height();
    if (!icon)
        return {std::max(left, right), top};
    const bool isInUpperHalf = icon->y() < screen.center().y();
    const int y = isInUpperHalf ? icon->y() + margin : icon->y() - margin - panel.height();
    return {between(icon->x() - panel.width() / 2, left, right), between(y, top, bottom)};
}
