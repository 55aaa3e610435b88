// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Desktop.h"

#include <QStringList>

/// Remembers what was handed over.
class FakeDesktop final : public Desktop {
public:
    bool open(const QUrl& address) override {
        opened.append(address);
        return true;
    }
    void copy(const QString& text) override { clipboard = text; }
    std::optional<QString> download(const QString& name, const QByteArray& content) override {
        if (diskIsFull)
            return std::nullopt;
        downloads.append({name, content});
        return QStringLiteral("/home/kari/Nedlastinger/") + name;
    }

    QList<QUrl> opened;
    QString clipboard;
    QList<std::pair<QString, QByteArray>> downloads;
    bool diskIsFull = false;
};
