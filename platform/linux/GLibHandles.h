// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <glib-object.h>

#include <memory>

/// Owners for what GLib-style libraries hand out.
struct GObjectUnref {
    void operator()(void* object) const { g_object_unref(object); }
};
template<typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

struct GFree {
    void operator()(void* memory) const { g_free(memory); }
};
using GCharPtr = std::unique_ptr<char, GFree>;

/// Receives the error of one call.
class GErrorSlot {
public:
    GErrorSlot() = default;
    ~GErrorSlot() { g_clear_error(&m_error); }
    GErrorSlot(const GErrorSlot&) = delete;
    GErrorSlot& operator=(const GErrorSlot&) = delete;

    GError** out() { return &m_error; }
    explicit operator bool() const { return m_error != nullptr; }
    QByteArray message() const { return m_error ? QByteArray(m_error->message) : QByteArray(); }

private:
    GError* m_error = nullptr;
};
