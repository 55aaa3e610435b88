// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"
#include "platform/SecretStore.h"

class GErrorSlot;

/// Items in the user's Secret Service (GNOME Keyring, KWallet, KeePassXC), in its default
/// collection, with the attributes "service" and "account". After a call that the keychain let run
/// into its limit, nothing is asked of it for some minutes.
class SecretServiceStore final : public SecretStore {
    Q_OBJECT
public:
    explicit SecretServiceStore(Clock& clock, QObject* parent = nullptr);

    QCoro::Task<bool> add(QString service, QString label, Item item) override;
    QCoro::Task<std::optional<Item>> find(QString service) override;
    QCoro::Task<> remove(QString service) override;

private:
    /// A keychain that can be read may still refuse to be changed, not the other way round.
    enum class Use { reading, changing };

    /// Whether the keychain let a call run into its limit, and not long ago.
    bool isSilent() const;
    void noteEnd(Use use, const GErrorSlot* error);
    void report(Use use, const QByteArray& reason);

    Clock& m_clock;
    std::optional<Ticks> m_silentSince;
    /// What failed first, was reported, and has not worked since.
    std::optional<Use> m_fault;
};
