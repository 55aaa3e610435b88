// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CookieStore.h"

typedef struct _WebKitCookieManager WebKitCookieManager;

/// The cookies of WebKitGTK's cookie manager.
class WebKitCookies final : public CookieStore {
public:
    /// Both must outlive the store and every operation begun here.
    WebKitCookies(WebKitCookieManager* manager, Clock& clock);

    QCoro::Task<std::optional<QList<WebCookie>>> all() override;
    QCoro::Task<bool> set(WebCookie cookie) override;
    QCoro::Task<> remove(WebCookie cookie) override;

private:
    WebKitCookieManager* m_manager;
    Clock& m_clock;
};
