// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QProcess>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>

/// What a screen reader sees: the accessible objects of every program on the display, over the
/// desktop's accessibility bus, which is started with it. Needs the session bus of a TestBus.
class AccessibleTree {
public:
    /// An object of some program; its properties are asked of the program each time.
    struct Item {
        QString service;
        QString path;
        QString name;
        QString role; ///< as the service calls it: "push button", "check box", "label", …
        QRect place;  ///< on the screen, in pixels
        bool isChecked = false;
    };
    using Wanted = std::function<bool(const Item&)>;

    AccessibleTree();
    ~AccessibleTree();
    Q_DISABLE_COPY_MOVE(AccessibleTree)

    /// False when the bus did not come up.
    bool isThere() const { return m_bus.isConnected(); }
    /// The first object that is on the screen and wanted, in reading order; absent when there is
    /// none. `place` and `isChecked` are not known yet when `wanted` is asked.
    std::optional<Item> find(const Wanted& wanted) const;
    /// Where it is on the screen, in pixels.
    QRect place(const Item& item) const;
    /// A line for each object on the screen, for a test that failed.
    QString text() const;

private:
    struct Node {
        QString service;
        QString path;
    };
    QDBusMessage answer(const QDBusMessage& call) const;
    QVariant ask(const Node& node, const QString& method) const;
    QVariant property(const Node& node, const QString& name) const;
    QList<Node> children(const Node& node) const;
    /// False as soon as `visitor` returns false.
    bool walk(const Node& node, int depth,
              const std::function<bool(const Item&, int depth)>& visitor) const;
    quint64 states(const Node& node) const;

    QProcess m_launcher;
    QDBusConnection m_bus{QString()};
};
