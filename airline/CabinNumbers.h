// SPDX-License-Identifier: MIT
#pragma once

#include "core/Cabin.h"

#include <array>
#include <initializer_list>
#include <optional>
#include <utility>

/// A number for some of the four cabins, such as seats or points. A round reads thousands of
/// these, so it is four numbers and no map.
class CabinNumbers {
public:
    CabinNumbers() = default;
    CabinNumbers(std::initializer_list<std::pair<Cabin, int>> numbers) {
        for (const auto& [cabin, number] : numbers)
            (*this)[cabin] = number;
    }

    /// Absent when the cabin has no number.
    std::optional<int>& operator[](Cabin cabin) { return m_numbers[static_cast<size_t>(cabin)]; }
    const std::optional<int>& operator[](Cabin cabin) const {
        return m_numbers[static_cast<size_t>(cabin)];
    }
    /// No cabin has a number.
    bool isEmpty() const { return *this == CabinNumbers(); }

    bool operator==(const CabinNumbers&) const = default;

private:
    std::array<std::optional<int>, 4> m_numbers;
};
