// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"
#include "platform/SecretStore.h"

/// Items in the user's Secret Service (GNOME Keyring, KWallet, KeePassXC), in its default
/// collection, with the attributes "service" and "account".
class SecretServiceStore final : public SecretStore {
    Q_OBJECT
public:
    explicit SecretServiceStore(Clock& clock, QObject* parent = nullptr);

    QCoro::Task<bool> add(QString service, QString label, Item item) override;
    QCoro::Task<std::optional<Item>> find(QString service) override;
    QCoro::Task<> remove(QString service) override;

private:
    void report(const QByteArray& reason);

    Clock& m_clock;
    bool m_reported = false;
};
