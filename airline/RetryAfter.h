// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QString>

#include <chrono>
#include <optional>

/// The HTTP header `Retry-After` in both its forms, a number of seconds and a date (RFC 9110,
/// 10.2.3): how long from `now` on the site wants to be left alone. Never negative, and never more
/// than a year; absent for any other text.
std::optional<std::chrono::seconds> retryAfter(const QString& text, Instant now);
