// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Leaves out of a text what is nobody else's business, and rather too much than too little.
namespace Redaction {

/// What is private to this user, in whatever form it stands.
struct Secrets {
    QString homeFolder;
    QString userName;
    /// Names and airport codes of the watchers.
    QStringList words;
};

/// One line without: those, other home folders, e-mail addresses, what follows "?" or "#" in an
/// address and who is in front of its host, cookies and headers, the values of "key=value", tokens,
/// routes, numbers of seven digits or more, and characters that do not show. A time at its start,
/// as the log writes it, stays. Cut to a sane length.
QString line(const QString& text, const Secrets& secrets);

} // namespace Redaction
