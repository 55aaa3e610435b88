// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Asks the window of this title on the X11 display to close, as its frame's button would. False
/// when there is none.
bool closeWindow(const QByteArray& title);
