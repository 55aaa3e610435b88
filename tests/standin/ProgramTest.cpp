// SPDX-License-Identifier: MIT
#include "tests/support/TestProgram.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wrongCommandLines_data();
    void wrongCommandLines();
    void saysWhereItIsAndEndsOrderly();
};

void ProgramTest::wrongCommandLines_data() {
    QTest::addColumn<QStringList>("arguments");
    for (const char* line :
         {"--port=65536", "--port=x", "--seed=-1", "--page-delay=", "--frobnicate",
          "--misbehave=OSL-BKK-20270301", "--misbehave=OSL-BKK=never", "--misbehave=*=status:1000",
          "--refuse-after=-1", "--refuse-after=5 --refuse-for=x", "--refuse-for=5",
          "--challenge=soon", "--sign-in-trouble=", "--sso-session=-5", "extra"})
        QTest::newRow(line) << QString::fromLatin1(line).split(u' ');
}

void ProgramTest::wrongCommandLines() {
    QFETCH(QStringList, arguments);
    QProcess program;
    program.start(builtProgram(QStringLiteral("tindra-standin")), arguments);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 2);
    QCOMPARE(program.readAllStandardError().count('\n'), 1);
    QVERIFY(program.readAllStandardOutput().isEmpty());
}

void ProgramTest::saysWhereItIsAndEndsOrderly() {
    QProcess program;
    program.start(builtProgram(QStringLiteral("tindra-standin")),
                  {QStringLiteral("--misbehave=*=status:429:Wed, 21 Oct 2026 07:28:00 GMT"),
                   QStringLiteral("--refuse-after=3"), QStringLiteral("--refuse-for=5"),
                   QStringLiteral("--seed=3")});
    QByteArray output;
    while (!output.contains("IDP_DOMAIN") && program.waitForReadyRead(10'000))
        output += program.readAllStandardOutput();
    static const QRegularExpression origin(
        QStringLiteral("export TINDRA_SITE_ORIGIN=http://site\\.localhost:\\d+\n"));
    QVERIFY(origin.match(QString::fromUtf8(output)).hasMatch());
    program.terminate();
    QVERIFY(program.waitForFinished(5000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
}

TINDRA_TEST(ProgramTest)
#include "ProgramTest.moc"
