// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <utility>

/// The two-column text files that are compiled into this library.
namespace Airports::Tables {

/// The rows of a file of `airports/data`, in the file's order: a code and what it stands for,
/// neither empty. The files are part of the program, so a missing file or a malformed row ends it
/// with a message that names the file and the line.
QList<std::pair<QString, QString>> rows(const char* file);

/// City name by code, for the airports of a metropolitan area that has several.
const QHash<QString, QString>& metroAreas();

} // namespace Airports::Tables
