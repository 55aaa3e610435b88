// SPDX-License-Identifier: MIT
#include "program/Output.h"

#include "core/TDLog.h"

#include <cstdio>

namespace {

void writeLine(std::FILE* stream, const QByteArray& line) {
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

} // namespace

void writeResult(const QByteArray& line) {
    writeLine(stdout, line);
}

void say(const QString& line) {
    writeLine(stderr, line.toUtf8());
}

void sayAndNote(const QString& line) {
    say(line);
    TDLog::note(line);
}
