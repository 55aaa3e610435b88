// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "platform/Instance.h"

class Clock;
class Database;

/// What a command on the data works with. All must outlive its run.
struct DataContext {
    Database& database;
    const Clock& clock;
    Site site;
};

/// For a terminal: without characters that could move the cursor or turn the text around. What is
/// stored may come from strangers.
inline QString printable(QString text) {
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = u' ';
    }
    return text;
}
