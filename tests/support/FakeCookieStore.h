// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CookieStore.h"
#include "platform/OneShot.h"

/// Cookies in memory; answers come in a later turn of the event loop.
class FakeCookieStore final : public CookieStore {
public:
    QCoro::Task<QList<WebCookie>> all() override {
        co_await nextTurn();
        co_return cookies;
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
