// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/// Runs its argument; all changes made there are stored together, or none of them when one fails.
/// They are on the disk when this returns true. Not to be nested.
using Transaction = std::function<bool(const std::function<void()>& work)>;
