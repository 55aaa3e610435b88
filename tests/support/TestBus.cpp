// SPDX-License-Identifier: MIT
#include "tests/support/TestBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

TestBus::TestBus() {
    const auto path = [this](const char* name) {
        const QString folder = m_home.path() + u'/' + QLatin1String(name);
        QDir().mkpath(folder);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return folder.toUtf8();
    };
    qputenv("HOME", m_home.path().toUtf8());
    qputenv("XDG_DATA_HOME", path("data"));
    qputenv("XDG_CONFIG_HOME", path("config"));
    qputenv("XDG_CACHE_HOME", path("cache"));
    qputenv("XDG_RUNTIME_DIR", path("run"));
    // A bus that starts no services by itself: a test has those that it starts, and no others.
    QFile config(m_home.path() + u"/bus.conf"_s);
    if (!config.open(QIODevice::WriteOnly))
        qFatal("no folder for the test bus");
    config.write("<busconfig><type>session</type><listen>unix:tmpdir=" + m_home.path().toUtf8() +
                 "</listen><auth>EXTERNAL</auth><policy context='default'>"
                 "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
                 "<allow own='*'/></policy></busconfig>");
    config.close();
    m_bus.start(u"dbus-daemon"_s,
                {u"--config-file"_s, config.fileName(), u"--nofork"_s, u"--print-address"_s});
    if (!m_bus.waitForReadyRead(10000))
        qFatal("no test bus: %s", m_bus.readAllStandardError().constData());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
}

TestBus::~TestBus() {
    stopSecretService();
    m_bus.terminate();
    m_bus.waitForFinished(5000);
}

bool TestBus::startSecretService() {
    m_secrets.start(u"gnome-keyring-daemon"_s,
                    {u"--foreground"_s, u"--unlock"_s, u"--components=secrets"_s});
    m_secrets.write("test\n");
    m_secrets.closeWriteChannel();
    QDBusConnection bus = QDBusConnection::sessionBus();
    return QTest::qWaitFor(
        [&bus] {
            return bus.interface()->isServiceRegistered(u"org.freedesktop.secrets"_s).value();
        },
        10000);
}

bool TestBus::lockSecretService() {
    auto lock =
        QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
                                       u"org.freedesktop.Secret.Service"_s, u"Lock"_s);
    const QList<QDBusObjectPath> keychains{
        QDBusObjectPath(u"/org/freedesktop/secrets/collection/login"_s)};
    lock << QVariant::fromValue(keychains);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(lock);
    return qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().value(0)) == keychains;
}

void TestBus::stopSecretService() {
    m_secrets.terminate();
    m_secrets.waitForFinished(5000);
}
