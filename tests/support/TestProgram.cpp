// SPDX-License-Identifier: MIT
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Entry {
    std::string_view name;
    TestClass::Main main;
};

std::vector<Entry>& entries() {
    static std::vector<Entry> all;
    return all;
}

int runAll(const QStringList& arguments) {
    const QString program = QFile::symLinkTarget(u"/proc/self/exe"_s);
    int failed = 0;
    for (const Entry& entry : entries()) {
        const QString name = QString::fromUtf8(entry.name.data(), qsizetype(entry.name.size()));
        failed += QProcess::execute(program, QStringList{u"--filter"_s, name} + arguments) != 0;
    }
    return failed;
}

} // namespace

TestClass::TestClass(const char* name, Main main) {
    entries().push_back({name, main});
}

QString builtProgram(const QString& name) {
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

int main(int argc, char* argv[]) {
    if (argc < 3 || std::string_view(argv[1]) != "--filter") {
        QStringList arguments;
        for (int i = 1; i < argc; ++i)
            arguments.append(QString::fromLocal8Bit(argv[i]));
        return runAll(arguments);
    }
    const auto entry = std::find_if(entries().begin(), entries().end(),
                                    [&](const Entry& e) { return e.name == argv[2]; });
    if (entry == entries().end()) {
        std::fprintf(stderr, "there is no test class %s; there are:\n", argv[2]);
        for (const Entry& known : entries())
            std::fprintf(stderr, "  %s\n", known.name.data());
        return 2;
    }
    argv[2] = argv[0];
    return entry->main(argc - 2, argv + 2);
}
