// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

/// The names of the files beside the database, and which of them are kept. Dates and times in the
/// names are the user's.
namespace DatabaseCopies {

inline constexpr int kept = 3;

/// The database itself.
QString main(const QString& folder);
/// The copy of a day.
QString daily(const QString& folder, QDate day);
/// Not yet used: what `purpose` ("damaged", "before-upgrade", "replaced") calls for now.
QString dated(const QString& folder, const QString& purpose, const Clock& clock);

/// File names of copies in the order in which they are to be trusted: the newest first, those of
/// days after `today`, from a clock that was wrong, last.
QStringList ordered(QStringList names, QDate today);
/// All copies that could take the database's place, as paths in that order.
QStringList candidates(const QString& folder, QDate today);
/// Removes all copies of a kind ("copy", "before-upgrade") but the first `kept`.
void prune(const QString& folder, const QString& kind, QDate today);

/// Puts the database in `file` in the place of the one in `folder`, which no other process may have
/// open. Returns where the replaced one is kept; absent when there was none. Throws Err, and leaves
/// everything as it was, when `file` is no usable Tindra database or there is no room.
std::optional<QString> restore(const QString& folder, const QString& file, const Clock& clock);

/// Puts `replaced`, which `restore` returned, back in the place of what it brought, which is
/// removed. False when all stay where they are.
bool undoRestore(const QString& folder, const QString& replaced);

/// Ends a replacement that was cut off half-way, and removes what copying left that was cut off.
/// Nothing may be copied into the folder meanwhile.
void tidy(const QString& folder);
/// The last good copy takes the place of the database that is damaged, or of which only the log is
/// left, or nothing; that is moved to `aside`. Returns the name of the copy; empty when none is
/// good and the place is free. Throws Err when nothing could be moved or there is no room.
QString replaceDamaged(const QString& folder, const QString& aside, QDate today);

} // namespace DatabaseCopies
