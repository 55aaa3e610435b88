// SPDX-License-Identifier: MIT
#include "platform/linux/DBusInstance.h"

#include "platform/Bundle.h"
#include "platform/OneShot.h"

#include <QCryptographicHash>
#include <QDBusAbstractAdaptor>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

const QString instancePath = u"/app/tindra/Tindra"_s;
const QString instanceInterface = u"app.tindra.Tindra"_s;
/// A command may be a whole round, or a sign-in.
constexpr int noTimeout = std::numeric_limits<int>::max();

/// Elements of a bus name do not begin with a digit.
QString busName(const QString& folder) {
    const QByteArray hash =
        QCryptographicHash::hash(QDir(folder).absolutePath().toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral(TINDRA_BUNDLE_ID ".Data") + QString::fromLatin1(hash.toHex().left(16));
}

/// Without a token of whoever the user has just pressed, Wayland lets no window come to the front.
void keepActivationToken(const QString& token) {
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

/// What desktops ask of an application that they can start by its name.
class DesktopCalls final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    DesktopCalls(std::function<void()> activate, std::function<void()> checkNow, QObject* object)
        : QDBusAbstractAdaptor(object)
        , m_activate(std::move(activate))
        , m_checkNow(std::move(checkNow)) {}

public Q_SLOTS:
    void Activate(const QVariantMap& platformData) { activate(platformData); }
    /// Tindra opens no files.
    void Open(const QStringList&, const QVariantMap& platformData) { activate(platformData); }
    void ActivateAction(const QString& name, const QVariantList&, const QVariantMap& platformData) {
        if (name == u"check-now")
            m_checkNow();
        else
            activate(platformData);
    }

private:
    void activate(const QVariantMap& platformData) {
        keepActivationToken(platformData.value(u"activation-token"_s).toString());
        m_activate();
    }

    std::function<void()> m_activate;
    std::function<void()> m_checkNow;
};

/// The object on the bus.
class CommandObject final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.tindra.Tindra")
public:
    CommandObject(Instance::Handler handler, QObject* parent)
        : QObject(parent), m_handler(std::move(handler)) {}

public Q_SLOTS:
    Q_SCRIPTABLE int run(const QStringList& arguments, QByteArray& out, QString& err) {
        out.clear();
        err.clear();
        setDelayedReply(true);
        m_handler(arguments).then(
            [request = message(), bus = connection()](const CommandAnswer& answer) {
                bus.send(request.createReply({answer.exitCode, answer.out, answer.err}));
            });
        return 0;
    }
    /// For the command that follows.
    Q_SCRIPTABLE Q_NOREPLY void activateWith(const QString& token) { keepActivationToken(token); }

private:
    Instance::Handler m_handler;
};

} // namespace

DBusInstance::DBusInstance(const QString& folder, const QDBusConnection& bus)
    : m_bus(bus), m_name(busName(folder)), m_lock(folder + u"/tindra.lock"_s) {
    QDir().mkpath(folder);
    // A lock is stale when its process is gone, never because it is old.
    m_lock.setStaleLockTime(0);
    // A folder that takes no lock file takes no changes either, so there is nothing to guard.
    m_isFirst = m_lock.tryLock() || m_lock.error() != QLockFile::LockFailedError;
}

DBusInstance::~DBusInstance() {
    m_bus.unregisterService(m_name);
    m_bus.unregisterService(QStringLiteral(TINDRA_BUNDLE_ID));
    m_bus.unregisterObject(instancePath);
}

void DBusInstance::serve(Handler handler) {
    m_object = new CommandObject(std::move(handler), this);
    m_bus.registerObject(instancePath, m_object,
                         QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportAdaptors);
    m_bus.registerService(m_name);
}

void DBusInstance::answerDesktop(std::function<void()> activate, std::function<void()> checkNow) {
    new DesktopCalls(std::move(activate), std::move(checkNow), m_object);
    m_bus.registerService(QStringLiteral(TINDRA_BUNDLE_ID));
}

QCoro::Task<std::optional<CommandAnswer>> DBusInstance::pass(QStringList arguments) {
    std::optional<CommandAnswer> answer;
    if (!m_bus.isConnected())
        co_return answer;
    const auto toFirst = [this](const QString& method) {
        return QDBusMessage::createMethodCall(m_name, instancePath, instanceInterface, method);
    };
    if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        m_bus.send(toFirst(u"activateWith"_s) << token);
    const QDBusMessage message = toFirst(u"run"_s) << arguments;
    QDBusPendingCallWatcher call(m_bus.asyncCall(message, noTimeout));
    QDBusServiceWatcher owner(m_name, m_bus, QDBusServiceWatcher::WatchForUnregistration);
    const OneShot<bool> end;
    QObject::connect(&call, &QDBusPendingCallWatcher::finished, [end] { end.resolve(true); });
    QObject::connect(&owner, &QDBusServiceWatcher::serviceUnregistered,
                     [end] { end.resolve(false); });
    co_await end;
    const QDBusPendingReply<int, QByteArray, QString> reply = call;
    if (call.isFinished() && !reply.isError())
        answer = CommandAnswer{reply.argumentAt<0>(), reply.argumentAt<1>(), reply.argumentAt<2>()};
    co_return answer;
}

#include "DBusInstance.moc"
