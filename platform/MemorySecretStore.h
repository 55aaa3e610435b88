// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OneShot.h"
#include "platform/SecretStore.h"

#include <QMap>

/// Secrets for this run only, as the demo has them, so that the user's own are never touched.
/// Answers come in a later turn of the event loop.
class MemorySecretStore final : public SecretStore {
    Q_OBJECT
public:
    QCoro::Task<bool> add(QString service, QString, Item item) override {
        co_await nextTurn();
        items.insert(service, item);
        co_return true;
    }
    QCoro::Task<std::optional<Item>> find(QString service) override {
        co_await nextTurn();
        const auto item = items.constFind(service);
        co_return item == items.constEnd() ? std::nullopt : std::optional(*item);
    }
    QCoro::Task<> remove(QString service) override {
        co_await nextTurn();
        items.remove(service);
    }

    /// By service; one item each.
    QMap<QString, Item> items;
};
