// SPDX-License-Identifier: MIT
#include "tests/e2e/AccessibleTree.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString accessible = u"org.a11y.atspi.Accessible"_s;
constexpr int timeoutMs = 2000;
constexpr int deepest = 60;

// Bits of AtspiStateType, at-spi2-core's atspi-constants.h.
constexpr quint64 checked = 1ULL << 4;
constexpr quint64 showing = 1ULL << 25;

} // namespace

AccessibleTree::AccessibleTree() {
    m_launcher.start(u"/usr/libexec/at-spi-bus-launcher"_s, {u"--launch-immediately"_s});
    QDBusConnection session = QDBusConnection::sessionBus();
    const bool hasStarted = QTest::qWaitFor(
        [&session] { return session.interface()->isServiceRegistered(u"org.a11y.Bus"_s).value(); },
        10000);
    if (!hasStarted)
        return;
    const QDBusMessage answer = session.call(QDBusMessage::createMethodCall(
        u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
    m_bus = QDBusConnection::connectToBus(answer.arguments().value(0).toString(), u"a11y"_s);
}

AccessibleTree::~AccessibleTree() {
    QDBusConnection::disconnectFromBus(u"a11y"_s);
    m_launcher.terminate();
    m_launcher.waitForFinished(5000);
}

// Services of the test go on answering meanwhile. Qt's own BlockWithGui does that too, but now and
// then overlooks an answer that comes at once, and waits for ever.
QDBusMessage AccessibleTree::answer(const QDBusMessage& call) const {
    const QDBusPendingCall pending = m_bus.asyncCall(call, timeoutMs);
    const QDBusPendingCallWatcher watcher(pending);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return pending.reply();
}

QVariant AccessibleTree::ask(const Node& node, const QString& method) const {
    const auto call = QDBusMessage::createMethodCall(node.service, node.path, accessible, method);
    return answer(call).arguments().value(0);
}

QVariant AccessibleTree::property(const Node& node, const QString& name) const {
    auto call = QDBusMessage::createMethodCall(node.service, node.path,
                                               u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call.setArguments({accessible, name});
    const QDBusMessage reply = answer(call);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QList<AccessibleTree::Node> AccessibleTree::children(const Node& node) const {
    const QVariant answer = ask(node, u"GetChildren"_s);
    QList<Node> nodes;
    if (!answer.canConvert<QDBusArgument>())
        return nodes;
    const auto list = answer.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Node child;
        QDBusObjectPath path;
        list.beginStructure();
        list >> child.service >> path;
        list.endStructure();
        child.path = path.path();
        nodes.append(child);
    }
    list.endArray();
    return nodes;
}

quint64 AccessibleTree::states(const Node& node) const {
    const QVariant answer = ask(node, u"GetState"_s);
    QList<uint> halves;
    if (answer.canConvert<QDBusArgument>())
        answer.value<QDBusArgument>() >> halves;
    return halves.value(0) | static_cast<quint64>(halves.value(1)) << 32;
}

bool AccessibleTree::walk(const Node& node, int depth,
                          const std::function<bool(const Item&, int depth)>& visitor) const {
    for (const Node& child : children(node)) {
        const QString role = ask(child, u"GetRoleName"_s).toString();
        // Programs and windows are gone through whatever they say of themselves.
        if (depth > 1 && !(states(child) & showing))
            continue;
        const Item item{child.service, child.path, property(child, u"Name"_s).toString(),
                        role,          {},         false};
        if (!visitor(item, depth))
            return false;
        if (depth < deepest && !walk(child, depth + 1, visitor))
            return false;
    }
    return true;
}

std::optional<AccessibleTree::Item> AccessibleTree::find(const Wanted& wanted) const {
    std::optional<Item> found;
    walk({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s}, 0,
         [&](const Item& item, int) {
             if (wanted(item))
                 found = item;
             return !found;
         });
    if (!found)
        return found;
    found->place = place(*found);
    found->isChecked = states({found->service, found->path}) & checked;
    return found;
}

QRect AccessibleTree::place(const Item& item) const {
    auto call = QDBusMessage::createMethodCall(item.service, item.path,
                                               u"org.a11y.atspi.Component"_s, u"GetExtents"_s);
    call.setArguments({uint(0)});
    const QVariant extents = answer(call).arguments().value(0);
    QRect place;
    if (extents.canConvert<QDBusArgument>())
        extents.value<QDBusArgument>() >> place;
    return place;
}

QString AccessibleTree::text() const {
    QString lines;
    walk({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s}, 0,
         [&lines](const Item& item, int depth) {
             lines += QString(2 * depth, u' ') + item.role + u": "_s + item.name + u'\n';
             return true;
         });
    return lines;
}
