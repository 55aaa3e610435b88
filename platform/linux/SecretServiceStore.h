// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"
#include "platform/SecretStore.h"

#include <memory>

class GErrorSlot;

/// Items in the user's Secret Service (GNOME Keyring, KWallet, KeePassXC), in its default
/// collection, with the attributes "service" and "account". One operation at a time, so that its
/// owner gets one prompt at a time. After a call that the keychain let run into its limit, nothing
/// is asked of it for ten minutes, or for an hour while that call stays unanswered: what waited for
/// it ends with it, undone.
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
    /// Of the operation that was begun last.
    OneShot<bool> m_lastEnd;
    /// A call has not been answered yet, though it may have been given up.
    std::shared_ptr<bool> m_isQuestionOpen = std::make_shared<bool>(false);
    std::optional<Ticks> m_silentSince;
    /// What failed first, was reported, and has not worked since.
    std::optional<Use> m_fault;
};
