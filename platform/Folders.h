// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Where this run keeps its files. Absolute paths without a trailing slash; the folders need not
/// exist yet, whoever writes into one creates it.
class Folders {
public:
    virtual ~Folders() = default;

    /// What must survive: database, log, the web view's cookies. Readable by its owner only.
    virtual QString data() const = 0;
    /// What can be made again.
    virtual QString cache() const = 0;
};
