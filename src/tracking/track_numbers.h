/// @file
/// The track numbers that the targets of a table have.
#pragma once

#include <ondrel/types.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace tolvarin::ondrel {

constexpr u32 firstTrackId = 1;
constexpr u32 lastTrackId = 4095; // twelve bits, and 0 means none
constexpr u32 mostTargets = lastTrackId - firstTrackId + 1;

/// Counts the targets of each number. A report can give a target any number, also one that another
/// target has: so there are counts, and numbers out of range are passed over.
class TrackNumbers {
public:
    void add(u32 number) {
        if (number <= lastTrackId) {
            ++_counts[number];
        }
    }

    void remove(u32 number) {
        if (number <= lastTrackId) {
            --_counts[number];
        }
    }

    /// The lowest free number from `start` on; after 4095 the search goes on at 1. There must be a
    /// free number.
    u32 firstFree(u32 start) const {
        const auto* const first = &_counts[firstTrackId];
        const auto* const end = _counts.data() + _counts.size();
        const auto* found = start >= firstTrackId && start <= lastTrackId
                                ? std::find(&_counts[start], end, 0)
                                : end;
        if (found == end) {
            found = std::find(first, end, 0);
        }
        return static_cast<u32>(found - _counts.data());
    }

private:
    std::array<std::uint16_t, lastTrackId + 1> _counts{};
};

} // namespace tolvarin::ondrel
