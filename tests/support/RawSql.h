// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTest>

#include <sqlite3.h>

/// Runs statements on the database file behind the program's back, as an earlier version or an
/// accident would have.
inline void runOn(const QString& folder, const QByteArray& sql) {
    sqlite3* db = nullptr;
    const QString path = folder + QStringLiteral("/tindra.sqlite");
    QCOMPARE(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    char* error = nullptr;
    sqlite3_exec(db, sql.constData(), nullptr, nullptr, &error);
    QVERIFY2(!error, error);
    sqlite3_close(db);
}
