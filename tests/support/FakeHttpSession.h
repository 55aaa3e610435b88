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
        std::optional<HttpResponse> response;
        const auto held = hold ? hold() : std::nullopt;
        if (held)
            co_await *held;
        co_await nextTurn();
        if (answer)
            response = answer(request);
        else
            QTest::qFail(qPrintable(request.url.toString()), __FILE__, __LINE__);
        co_return response;
    }

    QList<HttpRequest> sent;
    std::function<std::optional<HttpResponse>(const HttpRequest&)> answer;
    /// What a request waits for before it is answered; absent when it waits for nothing.
    std::function<std::optional<OneShot<bool>>()> hold;
};
