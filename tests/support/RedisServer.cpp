// SPDX-License-Identifier: MIT
#include "tests/support/RedisServer.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <csignal>

RedisServer::RedisServer() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    m_port = probe.serverPort();
    probe.close();
    start();
}

void RedisServer::start() {
    m_process.setWorkingDirectory(m_folder.path());
    m_process.start(QStringLiteral(REDIS_SERVER),
                    {QStringLiteral("--port"), QString::number(m_port), QStringLiteral("--bind"),
                     QStringLiteral("127.0.0.1"), QStringLiteral("--save"), QString(),
                     QStringLiteral("--appendonly"), QStringLiteral("no")});
    for (int attempt = 0; attempt < 200 && ask("PING") != "+PONG\r\n"; ++attempt)
        QTest::qWait(25);
}

void RedisServer::stop() {
    m_process.kill();
    m_process.waitForFinished();
}

void RedisServer::hang() {
    ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP);
}

void RedisServer::goOn() {
    ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT);
}

QByteArray RedisServer::ask(const QByteArray& command) const {
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), m_port);
    if (!socket.waitForConnected(1000))
        return {};
    socket.write(command + "\r\n");
    socket.waitForReadyRead(5000);
    return socket.readAll();
}
