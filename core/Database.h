// SPDX-License-Identifier: MIT
#pragma once

#include "core/KeyValues.h"
#include "core/OfferStore.h"
#include "core/Safekeeping.h"
#include "core/SeenStore.h"
#include "core/Settings.h"
#include "core/SqliteConnection.h"
#include "core/WatcherStore.h"

#include <QDate>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <future>
#include <optional>

/// Everything that Tindra remembers apart from secrets: watchers, offers, what each watcher has
/// seen, settings, and what else is kept from one run to the next. One SQLite file, main thread
/// only.
///
/// No operation fails loudly: without a usable file, reads are empty and changes do nothing, and
/// `problem` says why. What changes is told by the signals of the stores, once and together for all
/// changes of a turn of the event loop; a setting at once.
class Database : public QObject {
    Q_OBJECT
public:
    enum class Access {
        /// This process has the folder to itself, apart from `guest`s.
        owner,
        /// Another process has the folder: nothing is created, repaired or upgraded here.
        guest,
    };

    /// Opens `folder`/tindra.sqlite, creating what is missing, upgrading what is old (after a copy)
    /// and putting the last good copy, or a fresh file, in the place of one that is damaged, or
    /// missing beside its copies. The file of a later version is left alone. `clock` must outlive
    /// the database.
    Database(const QString& folder, const Clock& clock, Access access = Access::owner);
    ~Database() override;
    Q_DISABLE_COPY_MOVE(Database)

    WatcherStore& watchers() { return m_watchers; }
    OfferStore& offers() { return m_offers; }
    SeenStore& seen() { return m_seen; }
    Settings& settings() { return m_settings; }
    Safekeeping& safekeeping() { return m_safekeeping; }

    /// Why nothing can be stored, or not safely, in Norwegian; absent when all is well, and again
    /// when storing has worked after a failure. That a file is damaged stays until `recover`.
    const std::optional<QString>& problem() const { return m_problem; }
    /// Reads what became of the day's copy, and whether another process has changed the file, which
    /// is announced as a change of everything. Where there is a problem, it tries again: a problem
    /// goes away when storing works, and a damaged file is replaced as when it is opened. True when
    /// the problem or the data may be others than before.
    bool recover();

    /// What has happened to the user's data, in Norwegian, until they have seen it: the damaged
    /// file was replaced. Absent when nothing has.
    std::optional<QString> notice();
    void dismissNotice();

    /// Makes today's copy where there is none, and keeps three of them. It is made on another
    /// thread, from what is stored now; the database's end waits for it, and `recover` reads what
    /// became of it.
    void keepDailyCopy();
    /// Writes everything to a file of its own, which may replace an earlier such file but nothing
    /// else. Returns why that failed, in Norwegian; absent when the file is there.
    std::optional<QString> copyTo(const QString& file);

    /// Runs `work`; all its changes are stored together, or none of them when one fails. They are
    /// on the disk when this returns true. Not to be nested.
    bool transaction(const std::function<void()>& work);

Q_SIGNALS:
    /// What `problem` or `notice` say is another, or the file.
    void conditionChanged();

protected:
    void customEvent(QEvent* event) override;

private:
    struct CopyResult {
        /// Why there is no copy; absent when there is.
        std::optional<QString> reason;
        /// Because the database itself is broken.
        bool isDamaged = false;
    };

    /// What is to be announced.
    enum class News { condition, watchers, offers, everything };

    void open();
    bool isUsable();
    bool replaceDamaged();
    bool copyBeforeUpgrade();
    /// Waits for the copy that is being made, if any, and says what became of it.
    void endDailyCopy();
    void upgrade();
    std::optional<QString> writeCopy(const QString& file);
    void refuse(const QString& problem);
    void setProblem(const std::optional<QString>& problem);
    void noteFailure(const QString& message);
    void noteDamage(const QString& message);
    void noteChange(std::string_view table);
    void noteOthersChanges();
    void announceSoon(News news);
    Transaction asTransaction() {
        return [this](const std::function<void()>& work) { return transaction(work); };
    }
    void cleanupMismatchedMatches();
    void cleanupDuplicateMatches();

    QString m_folder;
    const Clock& m_clock;
    Access m_access;
    SqliteConnection m_db;
    KeyValues m_values{m_db};
    Safekeeping m_safekeeping{m_values, asTransaction()};
    Settings m_settings{m_values};
    WatcherStore m_watchers{m_db, m_safekeeping, asTransaction(), m_clock};
    OfferStore m_offers{m_db, asTransaction(), m_clock};
    SeenStore m_seen{m_db, asTransaction(), m_clock};
    QSet<News> m_news;
    /// The file as this process has seen it last; absent while it has seen none.
    std::optional<qint64> m_seenVersion;
    std::optional<QString> m_problem;
    /// The file was opened, and took changes then.
    bool m_isOpen = false;
    /// What was read was broken. Storing may still work in other places of the file.
    bool m_isDamaged = false;
    /// The file's `user_version` when it was opened.
    int m_version = 0;
    /// The last day whose copy was made, or could not be.
    QDate m_lastCopy;
    std::future<CopyResult> m_copy;
    QString m_lastRefusal;
    /// A statement has failed since the transaction began.
    bool m_failed = false;
};
