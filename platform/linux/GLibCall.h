// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"
#include "platform/OneShot.h"
#include "platform/linux/GLibHandles.h"

#include <gio/gio.h>

#include <memory>

/// One asynchronous call of a GLib library, awaited by a coroutine:
///
///     GLibCall call(clock, 10s);
///     start_something(..., call.cancellable(), GLibCall::finished, call.userData());
///     if (GAsyncResult* result = co_await call.end())
///         something_finish(..., result, error);
///
/// It ends by its time limit whatever the library does; then there is no result. An answer that
/// comes later is dropped.
class GLibCall {
public:
    GLibCall(Clock& clock, std::chrono::milliseconds limit)
        : m_state(std::make_shared<State>()), m_timer(clock.after(limit, [state = m_state] {
            g_cancellable_cancel(state->cancellable.get());
            state->end.resolve(nullptr);
        })) {}

    GCancellable* cancellable() const { return m_state->cancellable.get(); }
    /// Owned by the callback, which must be called exactly once.
    void* userData() const { return new std::shared_ptr<State>(m_state); }
    /// The result lives as long as this call; null when the limit came first.
    const OneShot<GAsyncResult*>& end() const { return m_state->end; }

    static void finished(GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::shared_ptr<State>> state(
            static_cast<std::shared_ptr<State>*>(data));
        (*state)->result.reset(static_cast<GAsyncResult*>(g_object_ref(result)));
        (*state)->end.resolve(result);
    }

private:
    struct State {
        GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
        GObjectPtr<GAsyncResult> result;
        OneShot<GAsyncResult*> end;
    };
    std::shared_ptr<State> m_state;
    std::unique_ptr<Clock::Timer> m_timer;
};
