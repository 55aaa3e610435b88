// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/DataContext.h"

class Arguments;
class Folders;

/// `tindra backup FILE`: everything but secrets, which are never in the database.
struct BackUp {
    QString file;
    bool operator==(const BackUp&) const = default;

    static BackUp parse(const QStringList& words);
    CommandAnswer run(const DataContext& context) const;
};

/// `tindra restore FILE`. Only where no other Tindra has the data.
struct Restore {
    QString file;
    bool operator==(const Restore&) const = default;

    static Restore parse(const QStringList& words);
    CommandAnswer run(const QString& folder, const Clock& clock) const;
};
