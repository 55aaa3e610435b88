// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <QString>

#include <optional>

/// The user's keychain: small secrets, each found by the name of its service.
/// All operations are asynchronous, because a keychain may ask its owner to unlock it. One that is
/// not answered ends within a minute, and so do those that were begun after it.
class SecretStore : public QObject {
    Q_OBJECT
public:
    struct Item {
        QString account;
        QByteArray data;
        bool operator==(const Item&) const = default;
    };

    using QObject::QObject;

    /// Adds an item. An item with the same service and account is replaced, others of the service
    /// stay. False when the keychain did not take it.
    virtual QCoro::Task<bool> add(QString service, QString label, Item item) = 0;
    /// One item of the service; absent when there is none or the keychain cannot be read.
    virtual QCoro::Task<std::optional<Item>> find(QString service) = 0;
    /// Removes all items of the service, as far as the keychain lets it.
    virtual QCoro::Task<> remove(QString service) = 0;

Q_SIGNALS:
    /// The keychain cannot be used; `reason` says why and what to do, in Norwegian. Emitted once,
    /// until it is `available` again.
    void unavailable(const QString& reason);
    /// What was unavailable works again.
    void available();
};
