// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

/// A value that one coroutine waits for and that somebody delivers once.
///
/// Copies share the value. The first `resolve` wins, later ones do nothing. The waiter is resumed
/// from the event loop, never from inside `resolve`, so the one who delivers needs no care about
/// what the waiter does next. Whoever owns the source of the value resolves it before dying;
/// otherwise the waiter waits for ever. Main thread only; at most one waiter.
template<typename T>
class OneShot {
public:
    OneShot() : m_state(std::make_shared<State>()) {}

    /// True when this call delivered the value.
    bool resolve(T value) const {
        if (m_state->value)
            return false;
        m_state->value = std::move(value);
        if (m_state->waiter) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [state = m_state] { std::exchange(state->waiter, nullptr).resume(); },
                Qt::QueuedConnection);
        }
        return true;
    }

    bool isResolved() const { return m_state->value.has_value(); }

    bool await_ready() const noexcept { return isResolved(); }
    void await_suspend(std::coroutine_handle<> waiter) const noexcept { m_state->waiter = waiter; }
    T await_resume() const { return *m_state->value; }

private:
    struct State {
        std::optional<T> value;
        std::coroutine_handle<> waiter;
    };
    std::shared_ptr<State> m_state;
};

/// Resolves in the next turn of the event loop: awaiting it lets everything else have its turn.
inline OneShot<bool> nextTurn() {
    OneShot<bool> turn;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [turn] { turn.resolve(true); }, Qt::QueuedConnection);
    return turn;
}
