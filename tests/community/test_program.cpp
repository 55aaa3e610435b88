// SPDX-License-Identifier: MIT
#include "World.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

// The sanitizer keeps what was freed.
#ifdef __SANITIZE_ADDRESS__
constexpr int memoryGoal = 1024 * 1024;
#else
constexpr int memoryGoal = 64 * 1024;
#endif

/// Of the process, in kB.
int mostMemory(qint64 process) {
    QFile status(u"/proc/%1/status"_s.arg(process));
    if (!status.open(QFile::ReadOnly))
        return -1;
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf("VmHWM:") + 6).trimmed().split(' ').value(0).toInt();
}

} // namespace

class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wrongCommandLines_data();
    void wrongCommandLines();
    void servesUntilItIsTold();
    void whatItCannotUse();
    void memoryUnderAttack();

private:
    static Http started(QProcess& program, const QStringList& arguments);
};

// Waits for the line that says where it listens.
Http ProgramTest::started(QProcess& program, const QStringList& arguments) {
    program.start(builtProgram(u"tindra-community"_s), QStringList{u"--port=0"_s} + arguments);
    program.waitForReadyRead(10'000);
    const QByteArray line = program.readLine();
    const QByteArray start = "tindra-community: listening on http://127.0.0.1:";
    return {line.startsWith(start) ? quint16(line.mid(start.size()).trimmed().toUInt())
                                   : quint16(0)};
}

void ProgramTest::wrongCommandLines_data() {
    QTest::addColumn<QString>("argument");
    QTest::addColumn<int>("code");
    for (const auto* argument : {"--port=65536", "--port=", "--store=sqlite", "--rate-limit=-1",
                                 "--rate-limit=x", "--frobnicate", "--data", "extra"})
        QTest::newRow(argument) << QString::fromLatin1(argument) << 2;
    for (const auto* argument : {"--listen=nowhere", "--trusted-proxy=x", "--store=redis://x:y"})
        QTest::newRow(argument) << QString::fromLatin1(argument) << 1;
}

void ProgramTest::wrongCommandLines() {
    QFETCH(QString, argument);
    const QTemporaryDir folder;
    QProcess program;
    program.start(builtProgram(u"tindra-community"_s), {u"--data="_s + folder.path(), argument});
    QVERIFY(program.waitForFinished());
    QTEST(program.exitCode(), "code");
    QCOMPARE(program.readAllStandardError().count('\n'), 1);
    QVERIFY(program.readAllStandardOutput().isEmpty());
}

void ProgramTest::servesUntilItIsTold() {
    const QTemporaryDir folder;
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, folder.path());
    program.setProcessEnvironment(environment);
    const Http http = started(program, {});
    QCOMPARE(http.get("/healthz").status, 200);
    const auto kept = http.open("GET /v1/hi");
    const QFileInfo file(folder.filePath(u"Tindra/community.sqlite"_s));
    QCOMPARE(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    program.terminate();
    QVERIFY(program.waitForFinished(5000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(program.readAllStandardError().isEmpty());
}

void ProgramTest::whatItCannotUse() {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"community.sqlite"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(QByteArray(8192, 'x'));
    file.close();
    QProcess program;
    QCOMPARE(started(program, {u"--data="_s + folder.path()}).port, 0);
    QVERIFY(program.state() == QProcess::NotRunning || program.waitForFinished());
    QCOMPARE(program.exitCode(), 1);
    QCOMPARE(program.readAllStandardError(), "tindra-community: file is not a database\n");
}

void ProgramTest::memoryUnderAttack() {
    const QTemporaryDir folder;
    QProcess program;
    const Http http = started(program, {u"--data="_s + folder.path(), u"--rate-limit=0"_s});
    QVERIFY(http.port != 0);
    // The largest finds that are taken, enough to fill every answer.
    QJsonObject find = World::find();
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    find[u"travelDate"_s] = today;
    find[u"bookingUrl"_s] = (u"https://www.sas.no/"_s + QString(600, u'x')).first(600);
    QByteArrayList routes;
    for (int i = 0; i < 100; ++i) {
        const QString route = u"OSL-A"_s + QChar(u'A' + i / 26) + QChar(u'A' + i % 26);
        routes += route.toLatin1();
        find[u"route"_s] = route;
        QJsonArray finds;
        for (int n = 0; n < 60; ++n) {
            find[u"key"_s] = today + u'-' + route + u"-SK%1"_s.arg(n);
            finds += find;
        }
        QCOMPARE(http.report(finds), 204);
    }
    const QByteArray head = "POST /v1/hits HTTP/1.1\r\nContent-Type: application/json\r\n";
    const QByteArrayList attacks{
        // headers and bodies that never end
        "GET / HTTP/1.1\r\nX: " + QByteArray(16'000, 'x'),
        "GET / HTTP/1.1\r\n" + QByteArray("A: b\r\n").repeated(2700),
        head + "Content-Length: 262144\r\n\r\n" + QByteArray(262'000, '['),
        // whole ones
        head + "Content-Length: 262144\r\n\r\n" + QByteArray(262'144, '['),
        head + "Content-Length: 262144\r\n\r\n{\"hits\":[" + QByteArray("{},").repeated(87'378) +
            "{",
        // answers that nobody takes
        ("GET /v1/hits?routes=" + routes.first(60).join(',') + " HTTP/1.1\r\n\r\n").repeated(30),
        ("GET /v1/hits?routes=" + routes.last(60).join(',') + " HTTP/1.1\r\n\r\n").repeated(30)};
    std::vector<std::unique_ptr<QTcpSocket>> crowd;
    for (const QByteArray& attack : attacks) {
        for (int i = 0; i < 80; ++i) {
            crowd.push_back(http.open({}));
            crowd.back()->setReadBufferSize(1);
            crowd.back()->write(attack);
            crowd.back()->waitForBytesWritten(5);
        }
        QVERIFY(!http.hits(routes.first()).isEmpty());
    }
    const int most = mostMemory(program.processId());
    qInfo("most memory: %d kB", most);
#ifndef __SANITIZE_THREAD__ // whose own memory is several times the program's
    QVERIFY(most > 0 && most < memoryGoal);
#endif
    QCOMPARE(http.get("/healthz").status, 200);
    program.terminate();
    QVERIFY(program.waitForFinished(5000));
}

TINDRA_TEST(ProgramTest)
#include "test_program.moc"
