// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

/// The columns of the row that a query stands on, numbered from 0. NULL reads as empty or 0.
class SqliteRow {
public:
    explicit SqliteRow(sqlite3_stmt* statement) : m_statement(statement) {}

    bool isNull(int column) const;
    QString text(int column) const;
    qint64 integer(int column) const;
    double real(int column) const;

private:
    sqlite3_stmt* m_statement;
};

/// One connection to a SQLite file. Nothing fails loudly: a statement that cannot run reads
/// nothing or changes nothing. Not for two threads at once.
class SqliteConnection {
public:
    SqliteConnection() = default;
    ~SqliteConnection();
    Q_DISABLE_COPY_MOVE(SqliteConnection)

    /// Opens `path`, creating the file readable and writable by its owner only.
    void open(const QString& path);
    /// Opens a file that must be there, and never changes it.
    void openReadOnly(const QString& path);
    /// From now on every statement fails.
    void close();

    /// Executes a script without parameters. False when it failed.
    bool execute(const char* script);

    /// Prepares, binds, steps to the end and finalizes. Parameters in the order of the
    /// placeholders: text, integers, doubles, booleans and instants. False when it failed.
    template<typename... Parameters>
    bool query(const char* sql, const std::function<void(const SqliteRow&)>& onRow,
               const Parameters&... parameters) {
        Statement statement(*this, sql);
        bindAll(statement, parameters...);
        return statement.run(onRow);
    }
    /// The same for a statement without rows. Returns how many rows it changed; 0 when it failed.
    template<typename... Parameters>
    int change(const char* sql, const Parameters&... parameters) {
        return query(sql, {}, parameters...) ? changes() : 0;
    }

    /// Another number after another connection has changed the file; absent when it cannot be read.
    std::optional<qint64> dataVersion();
    qint64 lastInsertId() const;
    /// What SQLite says of the last failed call, in English.
    QString errorMessage() const;
    /// The same as a few Norwegian words, where it is one of the failures that a user can meet.
    QString reason() const;
    /// Whether the last failed call failed because the file is broken, or no database.
    bool isDamaged() const;
    /// SQLite's, such as "3.40.1".
    static QString version();
    /// Called with that after every failure; none at first.
    void setErrorHandler(std::function<void(const QString&)> handler);
    /// Called with the table of every row that this connection adds, changes or removes; none at
    /// first. It is within the statement, so it may ask for nothing here. A `DELETE` without
    /// `WHERE` removes no single rows, and is not told.
    void setChangeHandler(std::function<void(std::string_view table)> handler);

private:
    class Statement {
    public:
        Statement(SqliteConnection& connection, const char* sql);
        ~Statement();
        Q_DISABLE_COPY_MOVE(Statement)

        void bind(int index, const QString& value);
        void bind(int index, qint64 value);
        void bind(int index, int value) { bind(index, static_cast<qint64>(value)); }
        void bind(int index, double value);
        void bind(int index, bool value);
        void bind(int index, Instant value) { bind(index, secondsSince1970(value)); }
        bool run(const std::function<void(const SqliteRow&)>& onRow);

    private:
        SqliteConnection& m_connection;
        sqlite3_stmt* m_statement = nullptr;
    };

    template<typename... Parameters>
    static void bindAll(Statement& statement, const Parameters&... parameters) {
        int index = 0;
        (statement.bind(++index, parameters), ...);
    }
    int changes() const;
    void noteError();
    void watchChanges();

    sqlite3* m_db = nullptr;
    std::function<void(const QString&)> m_onError;
    std::function<void(std::string_view)> m_onChange;
};
