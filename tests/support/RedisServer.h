// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <string>

/// A Redis of its own on a free port, which keeps nothing.
class RedisServer {
public:
    RedisServer();
    ~RedisServer() { stop(); }
    Q_DISABLE_COPY_MOVE(RedisServer)

    quint16 port() const { return m_port; }
    std::string url() const { return "redis://127.0.0.1:" + std::to_string(m_port); }
    void start(); ///< also again, on the same port
    void stop();
    void hang(); ///< takes connections, and answers nothing until goOn()
    void goOn();
    /// What it answers to an inline command such as "DBSIZE".
    QByteArray ask(const QByteArray& command) const;

private:
    QTemporaryDir m_folder;
    quint16 m_port = 0;
    QProcess m_process;
};
