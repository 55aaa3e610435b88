// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include <memory>
#include <optional>

/// The result of a task that has to end by itself, in real time; the test fails when it does not.
template<typename T>
std::optional<T> awaited(QCoro::Task<T> task, int timeoutMs = 20000) {
    const auto loop = std::make_shared<QEventLoop>();
    const auto result = std::make_shared<std::optional<T>>();
    task.then([result, loop](T value) {
        *result = std::move(value);
        loop->quit();
    });
    if (!*result) {
        QTimer::singleShot(timeoutMs, loop.get(), &QEventLoop::quit);
        loop->exec();
    }
    if (!*result)
        QTest::qFail("the task did not end", __FILE__, __LINE__);
    return *result;
}

inline bool awaited(QCoro::Task<> task, int timeoutMs = 20000) {
    const auto flag = [](QCoro::Task<> inner) -> QCoro::Task<bool> {
        co_await inner;
        co_return true;
    };
    return awaited(flag(std::move(task)), timeoutMs).has_value();
}
