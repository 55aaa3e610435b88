// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpSession.h"

#include <QNetworkAccessManager>

class Clock;

/// Over Qt's network classes. Keeps no cookies and no cache.
class NetworkSession final : public HttpSession {
public:
    /// `clock` must outlive the session.
    explicit NetworkSession(Clock& clock);

    QCoro::Task<std::optional<HttpResponse>> send(HttpRequest request) override;

private:
    Clock& m_clock;
    QNetworkAccessManager m_network;
};
