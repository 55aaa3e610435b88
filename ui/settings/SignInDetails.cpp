// SPDX-License-Identifier: MIT
#include "ui/settings/SignInDetails.h"

#include "platform/SecretStore.h"

#include <QPointer>

using namespace Qt::StringLiterals;

SignInDetails::SignInDetails(Keychain& keychain, const SecretStore& secrets)
    : m_keychain(keychain) {
    connect(&secrets, &SecretStore::unavailable, this, [this](const QString& reason) {
        m_unavailable = reason;
        Q_EMIT changed();
    });
    connect(&secrets, &SecretStore::available, this, [this] {
        m_unavailable.clear();
        Q_EMIT changed();
    });
}

bool SignInDetails::canSave() const {
    return m_edited && !m_saving && !m_user.trimmed().isEmpty() && !m_password.isEmpty();
}

void SignInDetails::setEbUser(const QString& user) {
    if (m_user == user)
        return;
    m_user = user;
    m_edited = true;
    Q_EMIT changed();
}

void SignInDetails::setEbPassword(const QString& password) {
    if (m_password == password)
        return;
    QString typed = password;
    if (m_password == passwordMask())
        typed.remove(passwordMask().front());
    m_password = typed;
    m_edited = true;
    Q_EMIT changed();
}

void SignInDetails::open() {
    reset();
    load();
}

void SignInDetails::close() {
    reset();
}

void SignInDetails::reset() {
    ++m_visit;
    m_user.clear();
    m_password.clear();
    m_problem.clear();
    m_edited = false;
    m_inKeychain = false;
    Q_EMIT changed();
}

QCoro::Task<> SignInDetails::load() {
    const QPointer self(this);
    const int visit = m_visit;
    const auto stored = co_await m_keychain.load();
    if (self && visit == m_visit)
        show(stored);
}

/// What the user has typed meanwhile stays.
void SignInDetails::show(const std::optional<Credentials>& stored) {
    m_inKeychain = stored.has_value();
    if (stored && !m_edited) {
        m_user = stored->user;
        m_password = passwordMask();
        m_problem.clear();
    }
    Q_EMIT changed();
}

QCoro::Task<> SignInDetails::store() {
    if (!canSave())
        co_return;
    const QPointer self(this);
    const int visit = m_visit;
    Credentials entered{m_user.trimmed(), m_password};
    const std::pair fields(m_user, m_password);
    m_saving = true;
    Q_EMIT changed();
    if (entered.password == passwordMask()) {
        const auto stored = co_await m_keychain.load();
        if (!self)
            co_return;
        if (!stored) {
            if (visit == m_visit)
                m_password.clear();
            endSave(u"Passordet finnes ikke i nøkkelringen. Skriv det inn på nytt."_s);
            co_return;
        }
        entered.password = stored->password;
    }
    co_await m_keychain.save(entered.user, entered.password);
    if (!self)
        co_return;
    // Whether it was taken shows only when it is read back.
    const auto stored = co_await m_keychain.load();
    if (!self)
        co_return;
    if (visit != m_visit) {
        endSave({});
        load();
        co_return;
    }
    const bool isTaken = stored == entered;
    // What has been typed since is not stored yet.
    m_edited = !isTaken || fields != std::pair(m_user, m_password);
    show(stored);
    endSave(isTaken ? QString() : u"Nøkkelringen tok ikke imot detaljene. Prøv igjen."_s);
}

void SignInDetails::endSave(const QString& problem) {
    m_saving = false;
    m_problem = problem;
    Q_EMIT changed();
}
