// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Whether something here draws faster than the processor; where nothing does, OpenGL is emulated,
/// slowly. `devices` is the folder of the devices, as /dev is laid out.
bool hasGraphicsHardware(const QString& devices = QStringLiteral("/dev"));
