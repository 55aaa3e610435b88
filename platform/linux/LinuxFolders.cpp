// SPDX-License-Identifier: MIT
#include "platform/linux/LinuxFolders.h"

#include <QStandardPaths>

LinuxFolders::LinuxFolders(const QString& name)
    : m_data(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/' + name)
    , m_cache(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u'/' +
              name) {}
