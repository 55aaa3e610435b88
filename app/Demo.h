// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Search.h"

#include <QDate>
#include <QList>
#include <QString>

#include <memory>

class Clock;
class WatcherStore;

/// The demo: a stand-in airline and a community service inside this process, and something to
/// watch.
class Demo {
public:
    /// The name of its data folder, so that the user's own is never touched.
    static QString folderName() { return QStringLiteral("Tindra-demo"); }

    /// Starts both; the airline's inventory goes on in `folder` where the last run left it, what
    /// hunters share is forgotten with the process. With `signInRequired` the airline shows offers
    /// to signed-in visitors only; without, it knows every browser already. In its second round it
    /// refuses to answer for a minute, once a process. `clock`, whose
    /// `now` their threads ask, must outlive the demo. Throws Err when one cannot start.
    Demo(const QString& folder, bool signInRequired, const Clock& clock);
    ~Demo();
    Q_DISABLE_COPY_MOVE(Demo)

    /// Where the stand-in is.
    Site site() const;
    /// The base address of the community service.
    QString community() const;

    /// Stores the demo's watchers, with windows some weeks after `today`, unless there are some
    /// whose windows still lie ahead.
    static void seedWatchers(WatcherStore& store, QDate today);
    static QList<Search> watchers(QDate today);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
