// SPDX-License-Identifier: MIT
#include "platform/linux/XdgAutostart.h"
#include "tests/support/TestProgram.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestAutostart : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_config;
    QString file() const { return m_config->path() + u"/autostart/app.tindra.Tindra.desktop"_s; }

private Q_SLOTS:
    void init() {
        m_config = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config->path()));
        qunsetenv("FLATPAK_ID");
    }

    void theDesktopCanReadTheEntry_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("exec");
        QTest::addRow("installed") << u"/usr/bin/tindra"_s << QByteArray("\"/usr/bin/tindra\"");
        QTest::addRow("reserved characters")
            << u"/home/å b/$1 50% \"x\\tindra"_s
            << QByteArray("\"/home/å b/\\\\$1 50%% \\\\\"x\\\\\\\\tindra\"");
    }

    void theDesktopCanReadTheEntry() {
        QFETCH(QString, program);
        QFETCH(QByteArray, exec);
        XdgAutostart autostart(program);
        QVERIFY(!autostart.isOn());
        QCOMPARE(autostart.setOn(true), std::nullopt);
        QVERIFY(autostart.isOn());

        QFile entry(file());
        QVERIFY(entry.open(QIODevice::ReadOnly));
        QVERIFY(entry.readAll().contains("\nExec=" + exec + " --hidden\n"));
        QCOMPARE(QProcess::execute(u"desktop-file-validate"_s, {file()}), 0);

        QCOMPARE(autostart.setOn(false), std::nullopt);
        QVERIFY(!autostart.isOn());
        QVERIFY(!QFile::exists(file()));
        QCOMPARE(autostart.setOn(false), std::nullopt);
    }

    void whatTheDesktopSwitchedOffIsOffUntilSwitchedOnAgain() {
        for (const char* line : {"Hidden=true", "X-GNOME-Autostart-enabled=false"}) {
            XdgAutostart autostart(u"/usr/bin/tindra"_s);
            QCOMPARE(autostart.setOn(true), std::nullopt);
            QFile entry(file());
            QVERIFY(entry.open(QIODevice::Append));
            entry.write(QByteArray(line) + '\n');
            entry.close();
            QVERIFY2(!autostart.isOn(), line);
            QCOMPARE(autostart.setOn(true), std::nullopt);
            QVERIFY2(autostart.isOn(), line);
        }
    }

    void whatCannotBeChangedIsSaid() {
        QFile inTheWay(m_config->path() + u"/autostart"_s);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        XdgAutostart autostart(u"/usr/bin/tindra"_s);
        QVERIFY(autostart.setOn(true).value().contains(file()));
        QVERIFY(inTheWay.remove());

        qputenv("FLATPAK_ID", "app.tindra.Tindra");
        QVERIFY(autostart.setOn(true).value().contains(u"Flatpak"_s));
        QVERIFY(!autostart.isOn());
    }
};

TINDRA_TEST(TestAutostart)
#include "test_autostart.moc"
