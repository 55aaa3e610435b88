// SPDX-License-Identifier: MIT
#pragma once

#include "core/Keychain.h"
#include "platform/Autostart.h"
#include "platform/MemorySecretStore.h"
#include "tests/support/AppWorld.h"
#include "tests/support/FakeDesktop.h"
#include "ui/settings/SettingsView.h"

/// A keychain that can be told to take nothing.
class MoodySecretStore final : public SecretStore {
public:
    QCoro::Task<bool> add(QString service, QString label, Item item) override {
        if (refuses)
            co_return false;
        co_return co_await store.add(service, label, item);
    }
    QCoro::Task<std::optional<Item>> find(QString service) override { return store.find(service); }
    QCoro::Task<> remove(QString service) override { return store.remove(service); }

    MemorySecretStore store;
    bool refuses = false;
};

class FakeAutostart final : public Autostart {
public:
    bool isOn() const override { return on; }
    std::optional<QString> setOn(bool wanted) override {
        if (problem)
            return problem;
        on = wanted;
        return {};
    }

    bool on = false;
    std::optional<QString> problem;
};

struct SettingsWorld : AppWorld {
    SessionState session;
    MoodySecretStore secrets;
    Keychain keychain{secrets};
    FakeDesktop desktop;
    FakeAutostart autostart;
    int tries = 0;
    int loginsOpened = 0;
    std::optional<QString> engineWarning;
    StandBack standBack{database.safekeeping(), clock};
    SessionModel pill{session, standBack, {[this] { ++loginsOpened; }, [this] { ++tries; }}};
    SignInDetails details{keychain, secrets};
    AboutTindra about{
        desktop,
        {QStringLiteral("WebKitGTK 2.50.6"), QStringLiteral("/home/kari/.local/share/Tindra"),
         [this] { return engineWarning; }, [] { return QStringLiteral("Tindra\nalt er bra"); }}};
    SettingsView view{state, database.settings(), airline, notifier, &autostart, pill, details,
                      about};

    void storeDetails(const QString& user, const QString& password) {
        keychain.save(user, password);
        settle();
    }
    std::optional<Credentials> inKeychain() {
        std::optional<Credentials> found;
        keychain.load().then(
            [&found](const std::optional<Credentials>& stored) { found = stored; });
        settle();
        return found;
    }
};
