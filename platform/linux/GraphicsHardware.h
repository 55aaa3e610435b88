// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Whether something here draws faster than the processor. Where nothing does, OpenGL is emulated:
/// its first picture takes a fifth of a second longer than Qt's own software renderer's, and its
/// threads take memory. `devices` is the folder of the devices, as /dev is laid out.
bool hasGraphicsHardware(const QString& devices = QStringLiteral("/dev"));
