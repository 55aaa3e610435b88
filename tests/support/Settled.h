// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QTest>

#include <optional>

/// The result of a task that has to end by itself, in real time; the test fails when it does not.
template<typename T>
std::optional<T> awaited(QCoro::Task<T> task, int timeoutMs = 20000) {
    auto result = std::make_shared<std::optional<T>>();
    task.then([result](T value) { *result = std::move(value); });
    if (!QTest::qWaitFor([&result] { return result->has_value(); }, timeoutMs))
        QTest::qFail("the task did not end", __FILE__, __LINE__);
    return *result;
}

inline bool awaited(QCoro::Task<> task, int timeoutMs = 20000) {
    auto ended = std::make_shared<bool>(false);
    task.then([ended] { *ended = true; });
    if (!QTest::qWaitFor([&ended] { return *ended; }, timeoutMs))
        QTest::qFail("the task did not end", __FILE__, __LINE__);
    return *ended;
}
