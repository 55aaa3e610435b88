// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

class SqliteConnection;

/// How the program is at one moment of the soak.
struct Reading {
    double hours = 0; ///< since the start, in the soak's own time
    double pss = 0;   ///< of all processes, MiB
    double own = 0;   ///< the part of it that is not mapped from files, MiB
    qsizetype processes = 0;
    qsizetype openFiles = 0; ///< of this process
    qsizetype threads = 0;   ///< of this process
    int rounds = 0;          ///< that have ended
    qint64 matches = 0;      ///< rows
    qint64 seen = 0;         ///< rows
    qint64 settings = 0;     ///< rows
    double database = 0;     ///< with its log, KiB
    double log = 0;          ///< KiB
    double folder = 0;       ///< all of the data folder, KiB

    /// Everything but `hours` and `rounds`; `folder` is the data folder.
    static Reading of(const QString& folder);
    static QString heading();
    QString line() const;
};

/// Median of their own memory in the last quarter against that of the second; 0 while there are too
/// few.
double growth(const QList<Reading>& readings);

/// What is wrong with the file, in SQLite's words; empty when it is sound.
QString damage(const QString& folder);
