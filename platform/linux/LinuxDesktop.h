// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Desktop.h"

/// The user's browser, clipboard and folder for downloads, as XDG names them.
class LinuxDesktop final : public Desktop {
public:
    bool open(const QUrl& address) override;
    void copy(const QString& text) override;
    std::optional<QString> download(const QString& name, const QByteArray& content) override;
};
