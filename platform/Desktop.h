// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// The user's desktop, as far as Tindra hands things over to it.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// Opens an address in the user's browser; false when nobody took it.
    virtual bool open(const QUrl& address) = 0;
    /// Puts plain text on the clipboard.
    virtual void copy(const QString& text) = 0;
    /// Writes a new file called `name`, or with a number after it where that exists already, into
    /// the user's folder for downloads, and returns its path; absent when it could not be written.
    virtual std::optional<QString> download(const QString& name, const QByteArray& content) = 0;
};
