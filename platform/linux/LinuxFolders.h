// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Folders.h"

/// `<XDG data home>/<name>` and `<XDG cache home>/<name>`.
class LinuxFolders final : public Folders {
public:
    explicit LinuxFolders(const QString& name);

    QString data() const override { return m_data; }
    QString cache() const override { return m_cache; }

private:
    QString m_data;
    QString m_cache;
};
