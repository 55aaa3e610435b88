// SPDX-License-Identifier: MIT
#include "platform/linux/SecretServiceStore.h"

#include "platform/Bundle.h"
#include "platform/linux/GLibHandles.h"

#include <QPointer>

#include <libsecret/secret.h>

using namespace std::chrono_literals;

using namespace Qt::StringLiterals;

namespace {

/// Long enough for somebody who types the keychain's password.
constexpr auto answerTimeout = 60s;

const SecretSchema& schema() {
    static const SecretSchema schema = {
        TINDRA_BUNDLE_ID,
        SECRET_SCHEMA_NONE,
        {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {"account", SECRET_SCHEMA_ATTRIBUTE_STRING}},
        0,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr};
    return schema;
}

struct AttributesUnref {
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
};
using Attributes = std::unique_ptr<GHashTable, AttributesUnref>;

Attributes attributes(const QString& service) {
    return Attributes(
        secret_attributes_build(&schema(), "service", service.toUtf8().constData(), nullptr));
}

/// One asynchronous call: the coroutine awaits `end`, which a cancelled call reaches too.
class Call {
public:
    explicit Call(Clock& clock)
        : m_timer(clock.after(answerTimeout, [cancellable = cancellable()] {
            g_cancellable_cancel(cancellable);
        })) {}

    GCancellable* cancellable() const { return m_cancellable.get(); }
    const OneShot<GAsyncResult*>& end() const { return m_end; }

    /// Keeps the result alive until the coroutine has been resumed and read it.
    static void finished(GObject*, GAsyncResult* result, gpointer call) {
        auto* self = static_cast<Call*>(call);
        self->m_result.reset(static_cast<GAsyncResult*>(g_object_ref(result)));
        self->m_end.resolve(result);
    }

private:
    GObjectPtr<GCancellable> m_cancellable{g_cancellable_new()};
    GObjectPtr<GAsyncResult> m_result;
    OneShot<GAsyncResult*> m_end;
    std::unique_ptr<Clock::Timer> m_timer;
};

std::optional<SecretStore::Item> itemOf(SecretItem* item) {
    SecretValue* value = secret_item_get_secret(item);
    if (!value)
        return std::nullopt;
    gsize size = 0;
    const gchar* data = secret_value_get(value, &size);
    SecretStore::Item result;
    result.data = QByteArray(data, static_cast<qsizetype>(size));
    secret_value_unref(value);
    const Attributes found(secret_item_get_attributes(item));
    const auto* account = static_cast<const char*>(g_hash_table_lookup(found.get(), "account"));
    if (!account)
        return std::nullopt;
    result.account = QString::fromUtf8(account);
    return result;
}

} // namespace

SecretServiceStore::SecretServiceStore(Clock& clock, QObject* parent)
    : SecretStore(parent), m_clock(clock) {}

QCoro::Task<bool> SecretServiceStore::add(QString service, QString label, Item item) {
    const QPointer self(this);
    const Attributes wanted(secret_attributes_build(&schema(), "service",
                                                    service.toUtf8().constData(), "account",
                                                    item.account.toUtf8().constData(), nullptr));
    SecretValue* value =
        secret_value_new(item.data.constData(), item.data.size(), "application/octet-stream");
    Call call(m_clock);
    secret_service_store(nullptr, &schema(), wanted.get(), SECRET_COLLECTION_DEFAULT,
                         label.toUtf8().constData(), value, call.cancellable(), &Call::finished,
                         &call);
    secret_value_unref(value);
    GAsyncResult* result = co_await call.end();
    GErrorSlot error;
    const bool stored = secret_service_store_finish(nullptr, result, error.out());
    if (error && self)
        self->report(error.message());
    co_return stored;
}

QCoro::Task<std::optional<SecretStore::Item>> SecretServiceStore::find(QString service) {
    const QPointer self(this);
    const Attributes wanted = attributes(service);
    Call call(m_clock);
    secret_service_search(
        nullptr, &schema(), wanted.get(),
        static_cast<SecretSearchFlags>(SECRET_SEARCH_UNLOCK | SECRET_SEARCH_LOAD_SECRETS),
        call.cancellable(), &Call::finished, &call);
    GAsyncResult* result = co_await call.end();
    GErrorSlot error;
    GList* items = secret_service_search_finish(nullptr, result, error.out());
    std::optional<Item> found;
    if (items)
        found = itemOf(static_cast<SecretItem*>(items->data));
    g_list_free_full(items, g_object_unref);
    if (error && self)
        self->report(error.message());
    co_return found;
}

QCoro::Task<> SecretServiceStore::remove(QString service) {
    const QPointer self(this);
    Clock& clock = m_clock;
    const Attributes wanted = attributes(service);
    // The library's own removal passes over items that are locked.
    Call search(clock);
    secret_service_search(nullptr, &schema(), wanted.get(),
                          static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK),
                          search.cancellable(), &Call::finished, &search);
    GAsyncResult* result = co_await search.end();
    GErrorSlot error;
    GList* items = secret_service_search_finish(nullptr, result, error.out());
    for (GList* item = items; item && !error; item = item->next) {
        Call removal(clock);
        secret_item_delete(static_cast<SecretItem*>(item->data), removal.cancellable(),
                           &Call::finished, &removal);
        GAsyncResult* removed = co_await removal.end();
        secret_item_delete_finish(static_cast<SecretItem*>(item->data), removed, error.out());
    }
    g_list_free_full(items, g_object_unref);
    if (error && self)
        self->report(error.message());
}

void SecretServiceStore::report(const QByteArray& reason) {
    if (std::exchange(m_reported, true))
        return;
    Q_EMIT unavailable(
        QStringLiteral("Nøkkelringen kan ikke brukes (%1). Innloggingen huskes ikke til neste "
                       "gang. Start en Secret Service, for eksempel gnome-keyring, og lås den opp.")
            .arg(QString::fromUtf8(reason)));
}
