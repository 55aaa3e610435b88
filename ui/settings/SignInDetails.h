// SPDX-License-Identifier: MIT
#pragma once

#include "core/Keychain.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class SecretStore;

/// The sign-in details as the user edits them. The stored password is never shown nor kept here:
/// eight bullets stand for it.
class SignInDetails : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(SignInDetailsModel)
    QML_UNCREATABLE("made by the program")
    /// EuroBonus number or e-mail address.
    Q_PROPERTY(QString ebUser READ ebUser WRITE setEbUser NOTIFY changed)
    Q_PROPERTY(QString ebPassword READ ebPassword WRITE setEbPassword NOTIFY changed)
    /// One of the two has been changed since they were stored.
    Q_PROPERTY(bool credsEdited READ credsEdited NOTIFY changed)
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed)
    /// The keychain holds what is shown.
    Q_PROPERTY(bool isStored READ isStored NOTIFY changed)
    /// Why the keychain cannot keep details; empty when nothing speaks against it.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
public:
    /// `secrets` is what `keychain` stands on; it says when it cannot be reached.
    SignInDetails(Keychain& keychain, const SecretStore& secrets);

    static QString passwordMask() { return QString(8, QChar(0x2022)); }

    const QString& ebUser() const { return m_user; }
    const QString& ebPassword() const { return m_password; }
    bool credsEdited() const { return m_edited; }
    bool canSave() const;
    bool isStored() const { return m_inKeychain && !m_edited; }
    const QString& problem() const { return m_unavailable.isEmpty() ? m_problem : m_unavailable; }

    void setEbUser(const QString& user);
    /// Whatever is typed into the mask replaces all of it.
    void setEbPassword(const QString& password);

    /// Shows what the keychain holds, as soon as it has answered.
    void open();
    /// Forgets what was typed.
    void close();
    /// Stores the two, the user name without surrounding blanks. What the keychain does not take
    /// stays in the fields.
    Q_INVOKABLE void save() { store(); }

Q_SIGNALS:
    void changed();

private:
    QCoro::Task<> load();
    QCoro::Task<> store();
    void reset();
    void show(const std::optional<Credentials>& stored);
    void endSave(const QString& problem);

    Keychain& m_keychain;
    QString m_user;
    QString m_password;
    /// The keychain's own words; they say more than ours.
    QString m_unavailable;
    QString m_problem;
    bool m_edited = false;
    bool m_inKeychain = false;
    bool m_saving = false;
    /// Answers to an earlier visit's questions are not shown.
    int m_visit = 0;
};
