// Conversions to the host's 32-bit integer that are defined for every input.

#pragma once

#include <cstdint>
#include <limits>

#include "AEGP_Host.h"

// Drops the fraction. What does not fit becomes the nearest limit, not-a-number becomes 0.
inline A_long truncateToLong(double value) noexcept {
    constexpr double lowest = std::numeric_limits<A_long>::min();
    constexpr double highest = std::numeric_limits<A_long>::max();
    if (value != value) {
        return 0;
    }
    return static_cast<A_long>(value < lowest ? lowest : value > highest ? highest : value);
}

// Keeps the low 32 bits, as 32-bit arithmetic would have left them.
inline A_long wrapToLong(std::int64_t value) noexcept {
    return static_cast<A_long>(value);
}
