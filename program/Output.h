// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// One line to standard output.
void writeResult(const QByteArray& line);
/// One line to standard error.
void say(const QString& line);
/// What is missing is said once, and Tindra goes on without.
void sayAndNote(const QString& line);
