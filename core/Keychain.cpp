// SPDX-License-Identifier: MIT
#include "core/Keychain.h"

#include "platform/Bundle.h"
#include "platform/SecretStore.h"

#include <QPointer>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

const QString detailsService = QStringLiteral(TINDRA_BUNDLE_ID ".eurobonus");
const QString cookiesService = QStringLiteral(TINDRA_BUNDLE_ID ".sascookies");

} // namespace

QCoro::Task<> Keychain::save(QString user, QString password) {
    const QPointer secrets(&m_secrets);
    // Named, because GCC 12 destroys an aggregate twice that is made inside a co_await expression.
    const SecretStore::Item item{user, password.toUtf8()};
    co_await secrets->remove(detailsService);
    if (secrets)
        co_await secrets->add(detailsService, u"Tindra: EuroBonus-innlogging"_s, item);
}

QCoro::Task<std::optional<Credentials>> Keychain::load() {
    const auto item = co_await m_secrets.find(detailsService);
    if (!item)
        co_return std::nullopt;
    // Whole or not at all: a sequence that is cut off at the end is an error too.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    const QString password = decoder(item->data);
    if (decoder.hasError())
        co_return std::nullopt;
    co_return Credentials{item->account, password};
}

QCoro::Task<> Keychain::clear() {
    co_await m_secrets.remove(detailsService);
}

QCoro::Task<bool> Keychain::saveCookieData(QByteArray data) {
    // The account is always the same, so this replaces; what is refused leaves the former one.
    const SecretStore::Item item{u"cookies"_s, data};
    co_return co_await m_secrets.add(cookiesService, u"Tindra: økten hos SAS"_s, item);
}

QCoro::Task<std::optional<QByteArray>> Keychain::loadCookieData() {
    const auto item = co_await m_secrets.find(cookiesService);
    if (!item)
        co_return std::nullopt;
    co_return item->data;
}
