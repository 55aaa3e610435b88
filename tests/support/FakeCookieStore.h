// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CookieStore.h"
#include "platform/OneShot.h"

/// Cookies in memory; answers come in a later turn of the event loop.
class FakeCookieStore final : public CookieStore {
public:
    QCoro::Task<std::optional<QList<WebCookie>>> all() override {
        co_await nextTurn();
        // A copy: QCoro 0.8 moves out of whatever is returned by name.
        co_return QList<WebCookie>(cookies);
    }
    QCoro::Task<bool> set(WebCookie cookie) override {
        co_await nextTurn();
        if (cookie.domain.isEmpty())
            co_return false;
        cookies.append(cookie);
        co_return true;
    }
    QCoro::Task<> remove(WebCookie cookie) override {
        co_await nextTurn();
        cookies.removeAll(cookie);
    }

    QList<WebCookie> cookies;
};
