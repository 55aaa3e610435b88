// SPDX-License-Identifier: MIT
#include "platform/linux/SecretServiceStore.h"

#include "platform/Bundle.h"
#include "platform/linux/GLibCall.h"

#include <QPointer>

#include <libsecret/secret.h>

using namespace std::chrono_literals;

using namespace Qt::StringLiterals;

namespace {

/// Long enough for somebody who types the keychain's password.
constexpr auto vaultTimeout = 60s;
/// How long a keychain that did not answer is left alone, and how long while its prompt may still
/// be on the screen: prompts pile up, but the library never tells that one went with its keychain.
constexpr std::chrono::minutes silencePause = 10min;
constexpr std::chrono::minutes promptPause = 1h;

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

/// A place in the row of operations, from the wish to its end.
class Place {
public:
    /// `lastEnd` is of the operation before, and then of this one.
    explicit Place(OneShot<bool>& lastEnd) : begin(std::exchange(lastEnd, m_end)) {}
    ~Place() { m_end.resolve(true); }
    Q_DISABLE_COPY_MOVE(Place)

private:
    const OneShot<bool> m_end;

public:
    const OneShot<bool> begin;
};

/// One call of the keychain's library. At its limit it is given up, but not cancelled: that takes
/// the prompt away from under its owner, which ends some versions of GNOME Keyring altogether.
/// Until the answer comes, `isOpen` says so.
class Question {
public:
    Question(Clock& clock, const std::shared_ptr<bool>& isOpen)
        : m_call(clock, vaultTimeout), m_isOpen(isOpen) {}

    /// For the callback, which must be called exactly once.
    void* ask() const {
        *m_isOpen = true;
        return new Asked{m_isOpen, m_call.userData()};
    }
    const OneShot<GAsyncResult*>& end() const { return m_call.end(); }

    static void answered(GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Asked> asked(static_cast<Asked*>(data));
        *asked->isOpen = false;
        GLibCall::finished(source, result, asked->call);
    }

private:
    struct Asked {
        std::shared_ptr<bool> isOpen;
        void* call;
    };
    GLibCall m_call;
    std::shared_ptr<bool> m_isOpen;
};

} // namespace

SecretServiceStore::SecretServiceStore(Clock& clock, QObject* parent)
    : SecretStore(parent), m_clock(clock) {
    m_lastEnd.resolve(true);
}

QCoro::Task<bool> SecretServiceStore::add(QString service, QString label, Item item) {
    const QPointer self(this);
    const Place turn(m_lastEnd);
    co_await turn.begin;
    if (!self || isSilent())
        co_return false;
    const Attributes wanted(secret_attributes_build(&schema(), "service",
                                                    service.toUtf8().constData(), "account",
                                                    item.account.toUtf8().constData(), nullptr));
    SecretValue* value =
        secret_value_new(item.data.constData(), item.data.size(), "application/octet-stream");
    const Question question(m_clock, m_isQuestionOpen);
    secret_service_store(nullptr, &schema(), wanted.get(), SECRET_COLLECTION_DEFAULT,
                         label.toUtf8().constData(), value, nullptr, Question::answered,
                         question.ask());
    secret_value_unref(value);
    GAsyncResult* result = co_await question.end();
    GErrorSlot error;
    const bool stored = result && secret_service_store_finish(nullptr, result, error.out());
    if (self)
        self->noteEnd(Use::changing, result ? &error : nullptr);
    co_return stored;
}

QCoro::Task<std::optional<SecretStore::Item>> SecretServiceStore::find(QString service) {
    const QPointer self(this);
    const Place turn(m_lastEnd);
    co_await turn.begin;
    if (!self || isSilent())
        co_return std::nullopt;
    const Attributes wanted = attributes(service);
    const Question question(m_clock, m_isQuestionOpen);
    secret_service_search(
        nullptr, &schema(), wanted.get(),
        static_cast<SecretSearchFlags>(SECRET_SEARCH_UNLOCK | SECRET_SEARCH_LOAD_SECRETS), nullptr,
        Question::answered, question.ask());
    GAsyncResult* result = co_await question.end();
    GErrorSlot error;
    GList* items = result ? secret_service_search_finish(nullptr, result, error.out()) : nullptr;
    std::optional<Item> found;
    if (items)
        found = itemOf(static_cast<SecretItem*>(items->data));
    g_list_free_full(items, g_object_unref);
    if (self)
        self->noteEnd(Use::reading, result ? &error : nullptr);
    co_return found;
}

QCoro::Task<> SecretServiceStore::remove(QString service) {
    const QPointer self(this);
    const Place turn(m_lastEnd);
    co_await turn.begin;
    if (!self || isSilent())
        co_return;
    Clock& clock = m_clock;
    const auto isQuestionOpen = m_isQuestionOpen;
    const Attributes wanted = attributes(service);
    // The library's own removal passes over items that are locked.
    const Question search(clock, isQuestionOpen);
    secret_service_search(nullptr, &schema(), wanted.get(),
                          static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK),
                          nullptr, Question::answered, search.ask());
    GAsyncResult* result = co_await search.end();
    GErrorSlot error;
    GList* items = result ? secret_service_search_finish(nullptr, result, error.out()) : nullptr;
    const Use use = items ? Use::changing : Use::reading;
    for (GList* item = items; item && !error; item = item->next) {
        const Question removal(clock, isQuestionOpen);
        secret_item_delete(static_cast<SecretItem*>(item->data), nullptr, Question::answered,
                           removal.ask());
        GAsyncResult* removed = co_await removal.end();
        if (!removed) {
            result = nullptr;
            break;
        }
        secret_item_delete_finish(static_cast<SecretItem*>(item->data), removed, error.out());
    }
    g_list_free_full(items, g_object_unref);
    if (self)
        self->noteEnd(use, result ? &error : nullptr);
}

bool SecretServiceStore::isSilent() const {
    if (!m_silentSince)
        return false;
    return m_clock.ticks() - *m_silentSince < (*m_isQuestionOpen ? promptPause : silencePause);
}

/// `error` is null when the limit came before an answer.
void SecretServiceStore::noteEnd(Use use, const GErrorSlot* error) {
    if (error && !*error) {
        m_silentSince.reset();
        if (m_fault && *m_fault <= use) {
            m_fault.reset();
            Q_EMIT available();
        }
        return;
    }
    if (!error)
        m_silentSince = m_clock.ticks();
    report(use, error ? error->message() : QByteArray());
}

void SecretServiceStore::report(Use use, const QByteArray& reason) {
    if (m_fault)
        return;
    m_fault = use;
    Q_EMIT unavailable(
        QStringLiteral("Nøkkelringen kan ikke brukes (%1). Innloggingen huskes ikke til neste "
                       "gang. Start en Secret Service, for eksempel gnome-keyring, og lås den opp.")
            .arg(reason.isEmpty() ? u"den svarer ikke"_s : QString::fromUtf8(reason)));
}
