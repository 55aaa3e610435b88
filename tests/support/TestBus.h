// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QTemporaryDir>

/// A world of its own for one test program: a private session bus, home and data folders that are
/// removed with it. Created first thing in `main`, before anything connects to a bus.
class TestBus {
public:
    TestBus();
    ~TestBus();
    Q_DISABLE_COPY_MOVE(TestBus)

    /// Starts a Secret Service daemon with an unlocked, empty keychain.
    bool startSecretService();
    /// Locks that keychain; its password is "test".
    bool lockSecretService();
    void stopSecretService();
    QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
    QProcess m_bus;
    QProcess m_secrets;
};
