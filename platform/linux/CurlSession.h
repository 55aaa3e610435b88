// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpSession.h"

#include <QThreadPool>

#include <atomic>
#include <memory>

/// Over libcurl, each request on a thread of a small pool. Keeps no cookies, asks for no
/// compression, and takes no more than 64 KiB of headers.
class CurlSession final : public HttpSession {
public:
    CurlSession();
    /// Breaks off what is on its way; who waits for it gets nothing.
    ~CurlSession() override;
    Q_DISABLE_COPY_MOVE(CurlSession)

    QCoro::Task<std::optional<HttpResponse>> send(HttpRequest request) override;

private:
    QThreadPool m_pool;
    std::shared_ptr<std::atomic<bool>> m_isEnding = std::make_shared<std::atomic<bool>>(false);
};
