/// @file
/// Differences of numbers that wrap at 32 bits: time stamps, and altitudes in a comparison that
/// must not overflow.
#pragma once

#include <ondrel/types.h>

#include <algorithm>

namespace tolvarin::ondrel {

/// The magnitude of `a` - `b`, taken as a signed 32-bit number: 0 to 2^31. The same for (a, b) and
/// (b, a).
constexpr u32 wrappedDistance(u32 a, u32 b) {
    return std::min(a - b, b - a);
}

} // namespace tolvarin::ondrel
