// SPDX-License-Identifier: MIT
#include "platform/linux/CurlSession.h"

#include "TindraVersion.h"
#include "platform/OneShot.h"

#include <curl/curl.h>

namespace {

constexpr long mostRedirects = 5;
constexpr qint64 mostHeaders = 64 * 1024;
constexpr int requestsAtOnce = 4;

/// What the callbacks of one request share.
struct Exchange {
    QByteArray body;
    qint64 largestBody = 0;
    qint64 headers = 0;
    const std::atomic<bool>& isEnding;
};

// A callback that takes less than it is offered ends the request.
size_t takeBody(const char* data, size_t size, size_t count, void* user) {
    auto& exchange = *static_cast<Exchange*>(user);
    // One unit is one byte, always.
    const auto bytes = static_cast<qint64>(size) * static_cast<qint64>(count);
    if (exchange.body.size() + bytes > exchange.largestBody)
        return 0;
    exchange.body.append(data, bytes);
    return size * count;
}

size_t takeHeader(const char*, size_t size, size_t count, void* user) {
    auto& exchange = *static_cast<Exchange*>(user);
    exchange.headers += static_cast<qint64>(size) * static_cast<qint64>(count);
    return exchange.headers > mostHeaders ? 0 : size * count;
}

int mayGoOn(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<Exchange*>(user)->isEnding ? 1 : 0;
}

std::optional<HttpResponse> perform(const HttpRequest& request, const std::atomic<bool>& isEnding) {
    Exchange exchange{{}, request.largestBody, 0, isEnding};
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> owner(curl_easy_init(),
                                                                    curl_easy_cleanup);
    CURL* curl = owner.get();
    curl_slist* list = curl_slist_append(nullptr, "Content-Type: application/json");
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(list,
                                                                              curl_slist_free_all);
    const QByteArray url = request.url.toEncoded();
    const QByteArray scheme = request.url.scheme().toLatin1();
    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, scheme.constData());
    curl_easy_setopt(curl, CURLOPT_MAXREDIRS, mostRedirects);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, static_cast<long>(request.timeout.count()));
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_USERAGENT, "Tindra/" TINDRA_VERSION);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, takeBody);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &exchange);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, takeHeader);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &exchange);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, mayGoOn);
    curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &exchange);
    if (request.method == HttpRequest::Method::post) {
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, request.body.constData());
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(request.body.size()));
        curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.get());
    }
    if (curl_easy_perform(curl) != CURLE_OK)
        return std::nullopt;
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    return HttpResponse{static_cast<int>(status), std::move(exchange.body)};
}

} // namespace

CurlSession::CurlSession() {
    [[maybe_unused]] static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    m_pool.setMaxThreadCount(requestsAtOnce);
}

CurlSession::~CurlSession() {
    *m_isEnding = true;
    m_pool.waitForDone();
}

QCoro::Task<std::optional<HttpResponse>> CurlSession::send(HttpRequest request) {
    const OneShot<std::optional<HttpResponse>> answer;
    const auto work = [request = std::move(request), isEnding = m_isEnding, answer] {
        auto response = perform(request, *isEnding);
        // The waiter belongs to the main thread.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [answer, response = std::move(response)] { answer.resolve(response); },
            Qt::QueuedConnection);
    };
    m_pool.start(work);
    co_return co_await answer;
}
