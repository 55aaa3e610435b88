// SPDX-License-Identifier: MIT
#include "platform/linux/GraphicsHardware.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

bool hasGraphicsHardware(const QString& devices) {
    const QDir drawing(devices + u"/dri"_s);
    return !drawing.entryList({u"renderD*"_s}, QDir::System | QDir::Files).isEmpty() ||
           QFile::exists(devices + u"/nvidiactl"_s) || QFile::exists(devices + u"/dxg"_s);
}
