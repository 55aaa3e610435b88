// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpSession.h"
#include "platform/OneShot.h"

#include <QList>
#include <QTest>

#include <functional>

/// Remembers what was sent and answers in a later turn; a request without an `answer` fails the
/// test.
class FakeHttpSession final : public HttpSession {
public:
    QCoro::Task<std::optional<HttpResponse>> send(HttpRequest request) override {
        sent.append(request);
        const auto reply = answer;
        std::optional<HttpResponse> response;
        co_await nextTurn();
        if (reply)
            response = reply(request);
        else
            QTest::qFail(qPrintable(request.url.toString()), __FILE__, __LINE__);
        co_return response;
    }

    QList<HttpRequest> sent;
    std::function<std::optional<HttpResponse>(const HttpRequest&)> answer;
};
