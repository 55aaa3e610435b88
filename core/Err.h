// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The one error that is thrown across module borders; `message` is a Norwegian sentence for the
/// user.
struct Err {
    QString message;
    bool operator==(const Err&) const = default;
};
