// SPDX-License-Identifier: MIT
#include "core/SqliteConnection.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sqlite3.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// How long a statement waits for another process that is writing.
constexpr int busyTimeoutMs = 1000;

} // namespace

bool SqliteRow::isNull(int column) const {
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

QString SqliteRow::text(int column) const {
    const auto* chars = sqlite3_column_text(m_statement, column);
    return QString::fromUtf8(reinterpret_cast<const char*>(chars),
                             sqlite3_column_bytes(m_statement, column));
}

qint64 SqliteRow::integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

double SqliteRow::real(int column) const {
    return sqlite3_column_double(m_statement, column);
}

SqliteConnection::~SqliteConnection() {
    close();
}

void SqliteConnection::close() {
    sqlite3_close(std::exchange(m_db, nullptr));
}

void SqliteConnection::open(const QString& path) {
    close();
    const QByteArray file = QFile::encodeName(path);
    // SQLite would create it readable by everybody; its companions take their mode from it.
    const int created = ::open(file.constData(), O_RDONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (created >= 0) {
        struct stat info{};
        if (::fstat(created, &info) == 0 && S_ISREG(info.st_mode))
            ::fchmod(created, S_IRUSR | S_IWUSR);
        ::close(created);
    }
    if (sqlite3_open(file.constData(), &m_db) != SQLITE_OK)
        noteError(); // and every statement on it will fail
    sqlite3_busy_timeout(m_db, busyTimeoutMs);
    watchChanges();
}

void SqliteConnection::openReadOnly(const QString& path) {
    close();
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &m_db, SQLITE_OPEN_READONLY,
                        nullptr) != SQLITE_OK)
        noteError();
    sqlite3_busy_timeout(m_db, busyTimeoutMs);
}

bool SqliteConnection::execute(const char* script) {
    if (sqlite3_exec(m_db, script, nullptr, nullptr, nullptr) == SQLITE_OK)
        return true;
    noteError();
    return false;
}

int SqliteConnection::changes() const {
    return sqlite3_changes(m_db);
}

qint64 SqliteConnection::lastInsertId() const {
    return sqlite3_last_insert_rowid(m_db);
}

QString SqliteConnection::errorMessage() const {
    return m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : u"not open"_s;
}

QString SqliteConnection::reason() const {
    switch (m_db ? sqlite3_errcode(m_db) & 0xff : SQLITE_MISUSE) {
    case SQLITE_FULL:
        return u"disken er full"_s;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return u"filen eller mappen er skrivebeskyttet"_s;
    case SQLITE_CANTOPEN:
        return u"filen kan ikke åpnes"_s;
    case SQLITE_IOERR:
        return u"disken svarer med feil, eller er full"_s;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return u"et annet program bruker den"_s;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return u"filen er skadet eller ikke en database"_s;
    default:
        return errorMessage();
    }
}

bool SqliteConnection::isDamaged() const {
    const int code = m_db ? sqlite3_errcode(m_db) & 0xff : SQLITE_MISUSE;
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

QString SqliteConnection::version() {
    return QString::fromLatin1(sqlite3_libversion());
}

void SqliteConnection::setErrorHandler(std::function<void(const QString&)> handler) {
    m_onError = std::move(handler);
}

std::optional<qint64> SqliteConnection::dataVersion() {
    std::optional<qint64> version;
    query("PRAGMA data_version", [&version](const SqliteRow& row) { version = row.integer(0); });
    return version;
}

void SqliteConnection::setChangeHandler(std::function<void(std::string_view)> handler) {
    m_onChange = std::move(handler);
}

void SqliteConnection::watchChanges() {
    const auto changed = [](void* self, int, const char* schema, const char* table, sqlite3_int64) {
        const auto& onChange = static_cast<SqliteConnection*>(self)->m_onChange;
        // What is only put aside is in "temp".
        if (onChange && std::string_view(schema) == "main")
            onChange(table);
    };
    if (m_db)
        sqlite3_update_hook(m_db, changed, this);
}

void SqliteConnection::noteError() {
    if (m_onError)
        m_onError(errorMessage());
}

SqliteConnection::Statement::Statement(SqliteConnection& connection, const char* sql)
    : m_connection(connection) {
    if (sqlite3_prepare_v2(m_connection.m_db, sql, -1, &m_statement, nullptr) != SQLITE_OK)
        m_connection.noteError();
}

SqliteConnection::Statement::~Statement() {
    sqlite3_finalize(m_statement);
}

void SqliteConnection::Statement::bind(int index, const QString& value) {
    const QByteArray bytes = value.toUtf8();
    sqlite3_bind_text(m_statement, index, bytes.constData(), static_cast<int>(bytes.size()),
                      SQLITE_TRANSIENT);
}

void SqliteConnection::Statement::bind(int index, qint64 value) {
    sqlite3_bind_int64(m_statement, index, value);
}

void SqliteConnection::Statement::bind(int index, double value) {
    sqlite3_bind_double(m_statement, index, value);
}

void SqliteConnection::Statement::bind(int index, bool value) {
    sqlite3_bind_int(m_statement, index, value ? 1 : 0);
}

bool SqliteConnection::Statement::run(const std::function<void(const SqliteRow&)>& onRow) {
    if (!m_statement)
        return false;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(m_statement)) == SQLITE_ROW) {
        if (onRow)
            onRow(SqliteRow(m_statement));
    }
    if (result != SQLITE_DONE)
        m_connection.noteError();
    return result == SQLITE_DONE;
}
