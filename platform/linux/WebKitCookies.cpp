// SPDX-License-Identifier: MIT
#include "platform/linux/WebKitCookies.h"

#include "platform/linux/GLibCall.h"

#include <webkit2/webkit2.h>

#include <cmath>

using namespace std::chrono_literals;

namespace {

constexpr auto cookiesTimeout = 10s;

struct CookieFree {
    void operator()(SoupCookie* cookie) const { soup_cookie_free(cookie); }
};
using CookiePtr = std::unique_ptr<SoupCookie, CookieFree>;

WebCookie read(SoupCookie* soup) {
    WebCookie cookie;
    cookie.name = QString::fromUtf8(soup_cookie_get_name(soup));
    cookie.value = QString::fromUtf8(soup_cookie_get_value(soup));
    cookie.domain = QString::fromUtf8(soup_cookie_get_domain(soup));
    cookie.path = QString::fromUtf8(soup_cookie_get_path(soup));
    cookie.secure = soup_cookie_get_secure(soup);
    if (GDateTime* expires = soup_cookie_get_expires(soup))
        cookie.expires = instantFromSeconds(static_cast<double>(g_date_time_to_unix(expires)));
    return cookie;
}

/// Null for a cookie that the library could not hold.
CookiePtr write(const WebCookie& cookie) {
    if (cookie.name.isEmpty() || cookie.domain.isEmpty() || !cookie.path.startsWith(u'/'))
        return nullptr;
    CookiePtr soup(
        soup_cookie_new(cookie.name.toUtf8().constData(), cookie.value.toUtf8().constData(),
                        cookie.domain.toUtf8().constData(), cookie.path.toUtf8().constData(), -1));
    if (!soup)
        return nullptr;
    soup_cookie_set_secure(soup.get(), cookie.secure);
    if (cookie.expires) {
        // Beyond the library's calendar there is no date at all.
        GDateTime* expires = g_date_time_new_from_unix_utc(
            static_cast<gint64>(std::floor(secondsSince1970(*cookie.expires))));
        if (!expires)
            return nullptr;
        soup_cookie_set_expires(soup.get(), expires);
        g_date_time_unref(expires);
    }
    return soup;
}

} // namespace

WebKitCookies::WebKitCookies(WebKitCookieManager* manager, Clock& clock)
    : m_manager(manager), m_clock(clock) {}

QCoro::Task<std::optional<QList<WebCookie>>> WebKitCookies::all() {
    WebKitCookieManager* manager = m_manager;
    GLibCall call(m_clock, cookiesTimeout);
    webkit_cookie_manager_get_all_cookies(manager, call.cancellable(), GLibCall::finished,
                                          call.userData());
    GAsyncResult* result = co_await call.end();
    if (!result)
        co_return std::nullopt;
    GErrorSlot error;
    GList* list = webkit_cookie_manager_get_all_cookies_finish(manager, result, error.out());
    if (error)
        co_return std::nullopt;
    QList<WebCookie> cookies;
    for (GList* entry = list; entry; entry = entry->next) {
        const CookiePtr soup(static_cast<SoupCookie*>(entry->data));
        cookies.append(read(soup.get()));
    }
    g_list_free(list);
    co_return cookies;
}

QCoro::Task<bool> WebKitCookies::set(WebCookie cookie) {
    const CookiePtr soup = write(cookie);
    if (!soup)
        co_return false;
    WebKitCookieManager* manager = m_manager;
    GLibCall call(m_clock, cookiesTimeout);
    webkit_cookie_manager_add_cookie(manager, soup.get(), call.cancellable(), GLibCall::finished,
                                     call.userData());
    GAsyncResult* result = co_await call.end();
    GErrorSlot error;
    co_return result&& webkit_cookie_manager_add_cookie_finish(manager, result, error.out());
}

QCoro::Task<> WebKitCookies::remove(WebCookie cookie) {
    const CookiePtr soup = write(cookie);
    if (!soup)
        co_return;
    WebKitCookieManager* manager = m_manager;
    GLibCall call(m_clock, cookiesTimeout);
    webkit_cookie_manager_delete_cookie(manager, soup.get(), call.cancellable(), GLibCall::finished,
                                        call.userData());
    GAsyncResult* result = co_await call.end();
    GErrorSlot error;
    if (result)
        webkit_cookie_manager_delete_cookie_finish(manager, result, error.out());
}
