// SPDX-License-Identifier: MIT
// What happens to the user's data when the file, the folder or the disk is not as it should be.
#include "core/Database.h"
#include "core/DatabaseCopies.h"
#include "core/DatabaseFile.h"
#include "core/DateFmt.h"
#include "core/Err.h"
#include "core/TDLog.h"
#include "tests/support/ManualClock.h"
#include "tests/support/RawSql.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// While it lives, no file of this process grows beyond some bytes, as on a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t longestFile = 2000) {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = longestFile;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit m_before{};
};

/// While it lives, no thread can be started: there is no room for a stack of that size.
class NoThreads {
public:
    NoThreads() {
        ::pthread_getattr_default_np(&m_before);
        pthread_attr_t huge = m_before;
        ::pthread_attr_setstacksize(&huge, size_t(1) << 50);
        ::pthread_setattr_default_np(&huge);
    }
    ~NoThreads() { ::pthread_setattr_default_np(&m_before); }
    Q_DISABLE_COPY_MOVE(NoThreads)

private:
    pthread_attr_t m_before{};
};

QByteArray content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestDatabaseSafety : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    ManualClock m_clock;
    QString folder() const { return m_dir->path() + u"/Tindra"_s; }
    QString file() const { return folder() + u"/tindra.sqlite"_s; }
    QStringList files(const QString& pattern) const {
        return QDir(folder()).entryList({pattern}, QDir::Files, QDir::Name);
    }
    void addWatcher(Database& database, const QString& name) const {
        Search search;
        search.name = name;
        search.origin = u"OSL"_s;
        database.watchers().addSearch(search);
    }
    /// A data folder with this watcher in it.
    void fill(const QString& name, bool withCopy = false) const {
        Database database(folder(), m_clock);
        addWatcher(database, name);
        if (withCopy)
            database.keepDailyCopy();
    }
    static QStringList names(Database& database) {
        QStringList names;
        for (const Search& search : database.watchers().listSearches())
            names.append(search.name);
        return names;
    }
    void breakFile(const QString& how) const {
        QFile broken(file());
        QVERIFY(broken.open(QIODevice::ReadWrite));
        if (how == u"garbage") {
            broken.write(QByteArray(static_cast<int>(broken.size()), 'x'));
        } else if (how == u"in the middle") {
            broken.seek(4096);
            broken.write(QByteArray(8192, '\x5a'));
        } else {
            QVERIFY(broken.resize(how == u"cut off" ? broken.size() / 2 : 0));
        }
    }

private Q_SLOTS:
    void init() {
        m_clock = ManualClock();
        m_dir = std::make_unique<QTemporaryDir>();
        TDLog::start(m_dir->path() + u"/ui.log"_s, &m_clock);
    }
    void cleanup() { TDLog::start({}, nullptr); }

    void aDamagedFileIsSetAsideForTheLastGoodCopy_data() {
        QTest::addColumn<QString>("how");
        QTest::addColumn<bool>("hasCopy");
        for (const char* how : {"garbage", "in the middle", "cut off", "emptied"})
            QTest::addRow("%s", how) << QString::fromLatin1(how) << true;
        for (const char* how : {"garbage", "in the middle", "cut off"})
            QTest::addRow("%s, no copy", how) << QString::fromLatin1(how) << false;
    }
    void aDamagedFileIsSetAsideForTheLastGoodCopy() {
        QFETCH(QString, how);
        QFETCH(bool, hasCopy);
        fill(u"first"_s, hasCopy);
        fill(u"second"_s);
        if (hasCopy) {
            // A later copy that is damaged itself is passed by.
            QFile bad(DatabaseCopies::daily(folder(), m_clock.today().addDays(-1)));
            QVERIFY(bad.open(QIODevice::WriteOnly));
            bad.write("no copy");
            m_clock.advance(24h);
            QVERIFY(bad.copy(DatabaseCopies::daily(folder(), m_clock.today())));
        }
        breakFile(how);
        const QByteArray damaged = content(file());
        const QStringList left = hasCopy ? QStringList{u"first"_s} : QStringList{};
        {
            Database database(folder(), m_clock);
            QCOMPARE(database.problem().value_or(QString()), QString());
            QCOMPARE(names(database), left);
            const auto aside = files(u"tindra-damaged-*.sqlite"_s);
            QCOMPARE(aside.size(), 1);
            QCOMPARE(content(folder() + u'/' + aside[0]), damaged);
            QVERIFY(database.notice().value_or(QString()).contains(aside[0]));
            QCOMPARE(database.notice()->contains(u"tindra-copy-2027-01-15.sqlite"_s), hasCopy);
            addWatcher(database, u"third"_s);
        }
        // The user is told until they have seen it, and what follows is stored.
        Database database(folder(), m_clock);
        QCOMPARE(names(database), left + QStringList{u"third"_s});
        QVERIFY(database.notice());
        database.dismissNotice();
        QVERIFY(!database.notice());
        QVERIFY(content(m_dir->path() + u"/ui.log"_s).contains("Databasen var skadet"));
    }

    void aReplacementThatFailsChangesNothing() {
        fill(u"a"_s);
        // A folder cannot move into itself.
        const QString aside = folder() + u"/aside"_s;
        QVERIFY(!DatabaseFile::replace(file(), folder(), aside));
        QVERIFY(!QFile::exists(aside));
        Database database(folder(), m_clock);
        QCOMPARE(names(database), QStringList{u"a"_s});
    }

    void aMissingFileIsReplacedWhereThereAreCopies() {
        fill(u"a"_s, true);
        // What is left of the log belongs to the file that is gone.
        QVERIFY(QFile::remove(file()));
        QFile log(file() + u"-wal"_s);
        QVERIFY(log.open(QIODevice::WriteOnly));
        log.close();
        {
            Database database(folder(), m_clock);
            QCOMPARE(names(database), QStringList{u"a"_s});
            QVERIFY(database.notice().value_or(QString()).startsWith(u"Databasen var borte. "_s));
        }
        QCOMPARE(files(u"tindra-damaged-*"_s).size(), 1);
        // Those who remove everything begin afresh.
        QVERIFY(QDir(folder()).removeRecursively());
        Database database(folder(), m_clock);
        QVERIFY(names(database).isEmpty() && !database.notice() && !database.problem());
    }

    void whatWasCutOffIsFinishedOrRemoved() {
        fill(u"a"_s);
        const QString part = DatabaseCopies::daily(folder(), m_clock.today()) + u".part"_s;
        QVERIFY(QFile::copy(file(), part));
        QVERIFY(QFile::rename(file(), file() + u".new"_s));
        Database database(folder(), m_clock);
        QCOMPARE(names(database), QStringList{u"a"_s});
        QVERIFY(!QFile::exists(part));
    }

    void aCopyADayAndThreeInAll() {
        Database database(folder(), m_clock);
        for (int day = 0; day < 5; ++day) {
            addWatcher(database, QString::number(day));
            // As in every round: what became of the last copy is read before the next one.
            const auto isCopied = [&] {
                const bool isChanged = database.recover();
                database.keepDailyCopy();
                return !isChanged &&
                       QFile::exists(DatabaseCopies::daily(folder(), m_clock.today()));
            };
            QTRY_VERIFY(isCopied());
            m_clock.advance(24h);
        }
        const QStringList kept{u"tindra-copy-2027-01-17.sqlite"_s,
                               u"tindra-copy-2027-01-18.sqlite"_s,
                               u"tindra-copy-2027-01-19.sqlite"_s};
        QTRY_COMPARE(files(u"tindra-copy-*"_s), kept);
        QVERIFY(!(QFile::permissions(folder() + u'/' + kept[0]) &
                  (QFile::ReadGroup | QFile::ReadOther)));
        // Copies of days to come, from a clock that was wrong, do not push out today's.
        QCOMPARE(
            DatabaseCopies::ordered({u"tindra-copy-2031-01-01.sqlite"_s, kept[0],
                                     u"tindra-before-upgrade-2027-01-19-120000.sqlite"_s, kept[2]},
                                    QDate(2027, 1, 19)),
            QStringList({u"tindra-before-upgrade-2027-01-19-120000.sqlite"_s, kept[2], kept[0],
                         u"tindra-copy-2031-01-01.sqlite"_s}));
    }

    void aCopyThatFailsIsNoted() {
        Database database(folder(), m_clock);
        QVERIFY(QDir().mkpath(DatabaseCopies::daily(folder(), m_clock.today()) + u".part"_s));
        database.keepDailyCopy();
        const auto isNoted = [&] {
            return !database.recover() &&
                   content(m_dir->path() + u"/ui.log"_s).contains("dagens kopi ble ikke tatt");
        };
        QTRY_VERIFY(isNoted());
        QCOMPARE(database.problem().value_or(QString()), QString());

        m_clock.advance(24h);
        {
            const NoThreads none;
            database.keepDailyCopy();
        }
        QCOMPARE(content(m_dir->path() + u"/ui.log"_s).count("dagens kopi ble ikke tatt"), 2);
        QVERIFY(!database.recover() && !database.problem());
    }

    void damageFoundWhileRunningIsMended_data() {
        QTest::addColumn<bool>("byTheCopy");
        QTest::addRow("by the day's copy") << true;
        QTest::addRow("by what is read") << false;
    }
    void damageFoundWhileRunningIsMended() {
        QFETCH(bool, byTheCopy);
        fill(u"a"_s, true);
        Database database(folder(), m_clock);
        addWatcher(database, u"b"_s);
        runOn(folder(), "PRAGMA wal_checkpoint(TRUNCATE)");
        breakFile(u"in the middle"_s);
        if (byTheCopy) {
            m_clock.advance(24h);
            database.keepDailyCopy();
        } else {
            // Whoever writes makes the others read the file again.
            runOn(folder(), "INSERT INTO kv VALUES ('x', '1')");
            QCOMPARE(names(database), QStringList());
            QVERIFY(database.problem().value_or(QString()).contains(u"skadet"_s));
            // The rest of the file takes changes, which does not make it whole.
            QVERIFY(
                database.transaction([&] { database.safekeeping().note(Kept::toldBackground); }));
            QVERIFY(database.problem());
        }
        QVERIFY(QTest::qWaitFor([&] { return database.recover(); }));
        QCOMPARE(database.problem().value_or(QString()), QString());
        QCOMPARE(names(database), QStringList{u"a"_s});
        const auto aside = files(u"tindra-damaged-*.sqlite"_s);
        QCOMPARE(aside.size(), 1);
        QVERIFY(database.notice().value_or(QString()).contains(aside[0]));
        QVERIFY(content(m_dir->path() + u"/ui.log"_s).contains("database: skadet: "));
        QVERIFY(!content(m_dir->path() + u"/ui.log"_s).contains("not an error"));
        QVERIFY(!database.recover());
    }

    void anOldFileIsCopiedBeforeItsUpgrade() {
        fill(u"a"_s);
        runOn(folder(), "PRAGMA user_version = 0; ALTER TABLE matches DROP COLUMN duration_min;"
                        "CREATE TABLE much AS SELECT randomblob(200000);");
        {
            // Without room for the copy, the file stays as it is.
            std::optional<FullDisk> fullDisk(100000);
            Database database(folder(), m_clock);
            QVERIFY(database.problem().value_or(QString()).contains(u"kan ikke kopieres"_s));
            addWatcher(database, u"lost"_s);
            fullDisk.reset();
            database.recover();
            QCOMPARE(database.problem().value_or(QString()), QString());
            QCOMPARE(names(database), QStringList{u"a"_s});
        }
        fill(u"b"_s);
        const auto copies = files(u"tindra-before-upgrade-*"_s);
        QCOMPARE(copies.size(), 1);
        // It is the old file, and upgraded when it is put back.
        const QString replaced =
            DatabaseCopies::restore(folder(), folder() + u'/' + copies[0], m_clock).value();
        Database database(folder(), m_clock);
        QCOMPARE(names(database), QStringList{u"a"_s});
        QVERIFY(QFile::exists(replaced));
        QCOMPARE(files(u"tindra-before-upgrade-*"_s).size(), 2);
    }

    void aNewerFileIsNotTouched() {
        fill(u"a"_s);
        runOn(folder(), "PRAGMA user_version = 99; PRAGMA journal_mode = DELETE;");
        const QByteArray before = content(file());
        Database database(folder(), m_clock);
        QVERIFY(database.problem().value_or(QString()).contains(u"nyere versjon"_s));
        addWatcher(database, u"b"_s);
        QVERIFY(!database.transaction([&] { addWatcher(database, u"c"_s); }));
        database.keepDailyCopy();
        database.recover();
        QVERIFY(database.problem());
        QCOMPARE(content(file()), before);
        QCOMPARE(files(u"*"_s), QStringList{u"tindra.sqlite"_s});
    }

    void storingGoesOnWhenThereIsRoomAgain() {
        Database database(folder(), m_clock);
        addWatcher(database, u"a"_s);
        {
            const FullDisk fullDisk;
            addWatcher(database, u"lost"_s);
            QVERIFY(database.problem().value_or(QString()).contains(u"full"_s));
            database.keepDailyCopy();
            database.recover();
            QVERIFY(database.problem());
            QVERIFY(database.copyTo(m_dir->path() + u"/backup"_s));
            QCOMPARE(names(database), QStringList{u"a"_s});
        }
        database.recover();
        QCOMPARE(database.problem().value_or(QString()), QString());
        addWatcher(database, u"b"_s);
        QCOMPARE(names(database), QStringList({u"a"_s, u"b"_s}));
        QVERIFY(!QFile::exists(m_dir->path() + u"/backup"_s));
    }

    void storingGoesOnWhenTheFolderIsWritableAgain() {
        fill(u"a"_s);
        const bool isRoot = ::geteuid() == 0;
        constexpr auto readOnly = QFile::Permissions(0x5555);
        QVERIFY(QFile::setPermissions(m_dir->path(), readOnly));
        QVERIFY(QFile::setPermissions(folder(), readOnly));
        QVERIFY(QFile::setPermissions(file(), QFile::Permissions(0x4444)));
        // Root may write anywhere, so nobody tries instead.
        if (isRoot)
            QCOMPARE(::seteuid(65534), 0);
        Database database(folder(), m_clock);
        database.recover();
        if (isRoot)
            QCOMPARE(::seteuid(0), 0);
        QVERIFY(database.problem());
        QVERIFY(QFile::setPermissions(m_dir->path(), QFile::Permissions(0x7700)));
        QVERIFY(QFile::setPermissions(folder(), QFile::Permissions(0x7700)));
        database.recover();
        QCOMPARE(database.problem().value_or(QString()), QString());
        addWatcher(database, u"b"_s);
        QCOMPARE(names(database), QStringList({u"a"_s, u"b"_s}));
        QCOMPARE(files(u"tindra-*"_s), QStringList());
    }

    void aGuestReadsAndChangesButRepairsNothing() {
        Database owner(folder(), m_clock);
        addWatcher(owner, u"a"_s);
        {
            Database guest(folder(), m_clock, Database::Access::guest);
            addWatcher(guest, u"b"_s);
            guest.keepDailyCopy();
        }
        QCOMPARE(names(owner), QStringList({u"a"_s, u"b"_s}));
        const QString nothing = folder() + u"/nothing"_s;
        QVERIFY(Database(nothing, m_clock, Database::Access::guest).problem());
        QVERIFY(!QFile::exists(nothing));
        runOn(folder(), "PRAGMA user_version = 0");
        Database early(folder(), m_clock, Database::Access::guest);
        QVERIFY(early.problem());
        QCOMPARE(files(u"tindra-*"_s), QStringList());
    }

    void aLogThatACrashLeftGoesWithItsDatabase() {
        const QString backup = m_dir->path() + u"/backup.sqlite"_s;
        const QString crashed = m_dir->path() + u"/crashed"_s;
        QVERIFY(QDir().mkpath(crashed));
        {
            Database database(folder(), m_clock);
            addWatcher(database, u"a"_s);
            QVERIFY(!database.copyTo(backup));
            addWatcher(database, u"b"_s);
            for (const QString& name : {u"/tindra.sqlite"_s, u"/tindra.sqlite-wal"_s})
                QVERIFY(QFile::copy(folder() + name, crashed + name));
        }
        const QString replaced = DatabaseCopies::restore(crashed, backup, m_clock).value();
        {
            Database database(crashed, m_clock);
            QCOMPARE(names(database), QStringList{u"a"_s});
        }
        DatabaseCopies::restore(crashed, replaced, m_clock);
        Database database(crashed, m_clock);
        QCOMPARE(names(database), QStringList({u"a"_s, u"b"_s}));
    }

    void restoringChecksFirst() {
        const QString backup = m_dir->path() + u"/backup.sqlite"_s;
        {
            Database database(folder(), m_clock);
            addWatcher(database, u"a"_s);
            QVERIFY(!database.copyTo(backup));
            addWatcher(database, u"b"_s);
        }
        QVERIFY(QFile::copy(backup, backup + u"-cut"_s));
        QVERIFY(QFile::resize(backup + u"-cut"_s, 5000));
        QFile text(m_dir->path() + u"/text"_s);
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("Kjære dagbok");
        text.close();
        QFile empty(m_dir->path() + u"/empty"_s);
        QVERIFY(empty.open(QIODevice::WriteOnly));
        for (const QString& bad : {backup + u"-cut"_s, text.fileName(), empty.fileName(),
                                   m_dir->path(), m_dir->path() + u"/no"_s})
            QVERIFY_EXCEPTION_THROWN(DatabaseCopies::restore(folder(), bad, m_clock), Err);
        {
            Database database(folder(), m_clock);
            QCOMPARE(names(database), QStringList({u"a"_s, u"b"_s}));
        }
        const auto replaced = DatabaseCopies::restore(folder(), backup, m_clock);
        QVERIFY(replaced && QFile::exists(*replaced));
        Database database(folder(), m_clock);
        QCOMPARE(names(database), QStringList{u"a"_s});
    }
};

TINDRA_TEST(TestDatabaseSafety)
#include "test_database_safety.moc"
