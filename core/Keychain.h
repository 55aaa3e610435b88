// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QString>

#include <optional>

class SecretStore;

/// The user's EuroBonus sign-in details.
struct Credentials {
    /// Member number or e-mail address, as entered.
    QString user;
    QString password;
    bool operator==(const Credentials&) const = default;
};

/// The two secrets that Tindra keeps, each one item of the user's keychain. What cannot be read is
/// absent, what cannot be written is tried again at the next save. Any operation may take a minute.
class Keychain {
public:
    /// `secrets` must outlive this object, but not every operation begun here.
    explicit Keychain(SecretStore& secrets) : m_secrets(secrets) {}

    /// Replaces the sign-in details.
    QCoro::Task<> save(QString user, QString password);
    /// The sign-in details; absent when there are none or they are not readable text.
    QCoro::Task<std::optional<Credentials>> load();
    QCoro::Task<> clear();

    /// Replaces the cookie vault. False when the keychain did not take it; then the former one is
    /// as it was.
    QCoro::Task<bool> saveCookieData(QByteArray data);
    QCoro::Task<std::optional<QByteArray>> loadCookieData();

private:
    SecretStore& m_secrets;
};
