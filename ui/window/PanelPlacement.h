// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

/// Where the top left corner of a panel goes on a screen whose free area is `screen`: above or
/// below the `icon` that was pressed, whole and beside the edge it is on; in the top right corner
/// when nobody knows where the icon is. All in the screen's coordinates.
QPoint panelPlacement(std::optional<QPoint> icon, const QRect& screen, QSize panel);
