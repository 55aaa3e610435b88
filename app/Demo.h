// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Search.h"

#include <QDate>
#include <QList>
#include <QString>

#include <memory>

class Database;

/// The demo: a stand-in airline inside this process, and something to watch on it.
class Demo {
public:
    /// The name of its data folder, so that the user's own is never touched.
    static QString folderName() { return QStringLiteral("Tindra-demo"); }

    /// Starts the stand-in; its inventory goes on in `folder` where the last run left it.
    /// With `signInRequired` it shows offers to signed-in visitors only; without, it knows every
    /// browser already. Throws Err when it cannot
    /// start.
    Demo(const QString& folder, bool signInRequired);
    ~Demo();
    Q_DISABLE_COPY_MOVE(Demo)

    /// Where the stand-in is.
    Site site() const;

    /// Stores the demo's watchers, with windows some weeks after `today`, unless there are some
    /// whose windows still lie ahead.
    static void seedWatchers(Database& database, QDate today);
    static QList<Search> watchers(QDate today);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
