// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

/// A Redis server on a free port of this machine, gone with the object; it keeps nothing on disk.
class Redis {
public:
    Redis() {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        m_port = probe.serverPort();
        probe.close();
        m_process.setWorkingDirectory(m_folder.path());
        m_process.start(QStringLiteral("redis-server"),
                        {QStringLiteral("--bind"), QStringLiteral("127.0.0.1"),
                         QStringLiteral("--port"), QString::number(m_port),
                         QStringLiteral("--save"), QString(), QStringLiteral("--appendonly"),
                         QStringLiteral("no")});
        const auto answers = [this] {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, m_port);
            return socket.waitForConnected(100);
        };
        if (!QTest::qWaitFor(answers, 10000))
            QTest::qFail("redis-server does not answer", __FILE__, __LINE__);
    }
    ~Redis() {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Redis)

    QString address() const { return QStringLiteral("redis://127.0.0.1:%1").arg(m_port); }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
};
