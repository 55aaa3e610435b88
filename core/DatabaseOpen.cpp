// SPDX-License-Identifier: MIT
// How a database file is opened without harm to what it holds, copied, and replaced when it is
// damaged.
#include "core/Database.h"
#include "core/DatabaseCopies.h"
#include "core/DatabaseFile.h"
#include "core/DateFmt.h"
#include "core/Err.h"
#include "core/TDLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <system_error>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using DatabaseFile::Condition;

namespace {

void noteNoCopy(const QString& reason) {
    TDLog::note(u"database: dagens kopi ble ikke tatt (%1)"_s.arg(reason));
}

QString notReady(const QString& path) {
    return u"Databasen %1 er ikke klar. Prøv igjen når Tindra som kjører, er ferdig."_s.arg(path);
}

} // namespace

Database::Database(const QString& folder, const Clock& clock, Access access)
    : m_folder(folder), m_clock(clock), m_access(access) {
    m_db.setChangeHandler([this](std::string_view table) { noteChange(table); });
    open();
    // Nobody has read anything yet.
    m_news.clear();
    QCoreApplication::removePostedEvents(this);
}

Database::~Database() {
    endDailyCopy();
}

void Database::open() {
    // No file is moved while another thread reads it.
    endDailyCopy();
    m_db.close();
    m_isOpen = false;
    m_isDamaged = false;
    if (m_access == Access::owner && !QFileInfo::exists(m_folder)) {
        QDir().mkpath(m_folder);
        ::chmod(QFile::encodeName(m_folder).constData(), S_IRWXU);
    }
    if (m_access == Access::owner)
        DatabaseCopies::tidy(m_folder);
    setProblem(std::nullopt);
    // Whatever is read now may be other than before.
    announceSoon(News::everything);
    if (!isUsable())
        return;
    if (m_access == Access::guest)
        m_db.setErrorHandler([this](const QString& message) { noteFailure(message); });
    else
        upgrade();
    m_isOpen = !m_problem;
    if (m_isOpen)
        m_seenVersion = m_db.dataVersion();
}

/// Leaves a file open that may be written, or says why there is none.
bool Database::isUsable() {
    const QString path = DatabaseCopies::main(m_folder);
    m_db.setErrorHandler({});
    if (m_access == Access::guest && !QFile::exists(path)) {
        refuse(notReady(path));
        return false;
    }
    // SQLite makes a new database of a file that is empty or missing, which is right where there
    // are no copies.
    if (QFileInfo(path).size() == 0 &&
        !DatabaseCopies::candidates(m_folder, m_clock.today()).isEmpty())
        return replaceDamaged();
    m_db.open(path);
    const auto finding = DatabaseFile::examine(m_db);
    m_version = finding.version;
    switch (finding.condition) {
    case Condition::newer:
        refuse(u"Databasen %1 er fra en nyere versjon av Tindra. Den røres ikke, og ingenting blir "
               u"lagret. Installer den nyeste Tindra."_s.arg(path));
        m_db.close();
        return false;
    case Condition::unreadable:
        refuse(u"Databasen %1 kan ikke brukes (%2). Ingenting blir lagret. Sjekk at du har "
               u"skrivetilgang, og at det er plass på disken."_s.arg(path, finding.reason));
        return false;
    case Condition::damaged:
        m_db.close();
        return replaceDamaged();
    case Condition::usable:
        break;
    }
    if (m_access == Access::guest) {
        if (finding.version == DatabaseFile::schemaVersion)
            return true;
        refuse(notReady(path));
        return false;
    }
    return finding.version == DatabaseFile::schemaVersion || !finding.hasTables ||
           copyBeforeUpgrade();
}

/// True when a good file is open in its place.
bool Database::replaceDamaged() {
    const QString path = DatabaseCopies::main(m_folder);
    if (m_access == Access::guest) {
        refuse(u"Databasen %1 er skadet. Avslutt Tindra som kjører, og start den på nytt."_s.arg(
            path));
        return false;
    }
    const QString aside = DatabaseCopies::dated(m_folder, u"damaged"_s, m_clock);
    const bool wasThere = QFile::exists(path);
    QString used;
    try {
        used = DatabaseCopies::replaceDamaged(m_folder, aside, m_clock.today());
    } catch (const Err& error) {
        refuse(error.message + u" Ingenting blir lagret."_s);
        return false;
    }
    m_db.open(path);
    m_version = DatabaseFile::examine(m_db).version;
    const QString notice =
        (wasThere ? u"Databasen var skadet, og er satt til side som %1. "_s.arg(
                        QFileInfo(aside).fileName())
                  : u"Databasen var borte. "_s) +
        (used.isEmpty()
             ? u"Det fantes ingen god kopi, så Tindra begynner på nytt med en tom database."_s
             : u"Kopien %1 er tatt i bruk. Det som er kommet til siden den ble tatt, mangler."_s
                   .arg(used));
    TDLog::note(u"database: "_s + notice);
    // The fresh file has no table yet; upgrading makes the same one.
    m_db.execute("CREATE TABLE IF NOT EXISTS kv (key TEXT PRIMARY KEY, value TEXT NOT NULL)");
    m_safekeeping.set(Kept::storageNotice, notice);
    return true;
}

bool Database::copyBeforeUpgrade() {
    const QString copy = DatabaseCopies::dated(m_folder, u"before-upgrade"_s, m_clock);
    if (const auto reason = DatabaseFile::copy(m_db, copy)) {
        refuse(u"Databasen må oppgraderes, men kan ikke kopieres først (%1). Ingenting blir "
               u"lagret. Det prøves igjen i neste runde."_s.arg(*reason));
        m_db.close();
        return false;
    }
    TDLog::note(u"database: kopiert til %1 foer oppgradering"_s.arg(QFileInfo(copy).fileName()));
    DatabaseCopies::prune(m_folder, u"before-upgrade"_s, m_clock.today());
    return true;
}

void Database::refuse(const QString& problem) {
    m_db.setErrorHandler([this](const QString& message) { noteFailure(message); });
    setProblem(problem);
    if (std::exchange(m_lastRefusal, problem) != problem)
        TDLog::note(u"database: "_s + problem);
}

bool Database::recover() {
    const auto before = m_problem;
    if (m_copy.valid() && m_copy.wait_for(0s) == std::future_status::ready)
        endDailyCopy();
    if (!m_problem) {
        noteOthersChanges();
        return false;
    }
    if (!m_isOpen || m_isDamaged) {
        const bool wasDamaged = m_isDamaged;
        open();
        return wasDamaged || m_problem != before;
    }
    // Something that is really written, and gone again.
    transaction([this] {
        m_values.set(QString(), u"1"_s);
        m_values.remove(QString());
    });
    return m_problem != before;
}

std::optional<QString> Database::notice() {
    return m_safekeeping.get(Kept::storageNotice);
}

void Database::dismissNotice() {
    m_safekeeping.remove(Kept::storageNotice);
    announceSoon(News::condition);
}

void Database::keepDailyCopy() {
    const QDate today = m_clock.today();
    if (!m_isOpen || m_problem || m_access == Access::guest || m_lastCopy == today ||
        m_copy.valid())
        return;
    // One try a day: a disk that is full need not be told so after every round.
    m_lastCopy = today;
    const QString path = DatabaseCopies::daily(m_folder, today);
    if (QFile::exists(path))
        return;
    const auto make = [folder = m_folder, path, today] {
        SqliteConnection source;
        source.openReadOnly(DatabaseCopies::main(folder));
        CopyResult result{DatabaseFile::copy(source, path)};
        result.isDamaged = result.reason && source.isDamaged();
        if (!result.reason)
            DatabaseCopies::prune(folder, u"copy"_s, today);
        return result;
    };
    try {
        m_copy = std::async(std::launch::async, make);
    } catch (const std::system_error& error) {
        noteNoCopy(QString::fromLocal8Bit(error.what()));
    }
}

void Database::endDailyCopy() {
    if (!m_copy.valid())
        return;
    const CopyResult result = m_copy.get();
    if (result.reason)
        noteNoCopy(*result.reason);
    if (result.isDamaged)
        noteDamage(*result.reason);
}

std::optional<QString> Database::copyTo(const QString& file) {
    if (m_problem)
        return m_problem;
    const QFileInfo target(file);
    if (target.exists()) {
        if (target.canonicalFilePath() ==
            QFileInfo(DatabaseCopies::main(m_folder)).canonicalFilePath())
            return u"%1 er databasen selv"_s.arg(file);
        SqliteConnection earlier;
        earlier.openReadOnly(file);
        if (!target.isFile() || !DatabaseFile::examine(earlier).hasTables)
            return u"%1 finnes fra før, og er ikke en Tindra-database"_s.arg(file);
    }
    return writeCopy(file);
}

std::optional<QString> Database::writeCopy(const QString& file) {
    // A copy that finds no room says nothing about storing, but one may find damage.
    m_db.setErrorHandler({});
    auto reason = DatabaseFile::copy(m_db, file);
    m_db.setErrorHandler([this](const QString& message) { noteFailure(message); });
    if (reason && m_db.isDamaged())
        noteFailure(*reason);
    return reason;
}
