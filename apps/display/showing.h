#pragma once

#include "apps/tracking/geo_point.h"

#include <ondrel/types.h>

#include <cstddef>
#include <optional>

namespace tolvarin::ondrel::client {

/// One showing of all aircraft of a run.
struct Showing {
    u64 timeMs;     ///< the time of the run: mostly the newest stamp
    u64 number = 1; ///< counts the showings of the run from 1
    std::optional<GeoPoint> receiver = std::nullopt; ///< where it stands, if the user told
    std::size_t lostFeeds = 0;                       ///< that are not connected
};

/// Milliseconds after which position, altitude, speed, track and vertical rate are old.
constexpr u64 oldAfterMs = 60000;

/// A stamp that is further ahead of the run has no age: it is of before the time went back.
constexpr u64 furthestAheadMs = 10000;

/// Milliseconds from that time to the time of the showing; nothing for a time that has no age.
inline std::optional<u64> ageOf(u64 stampMs, const Showing& showing) {
    if (stampMs > showing.timeMs) {
        return stampMs - showing.timeMs > furthestAheadMs ? std::nullopt : std::optional<u64>(0);
    }
    return showing.timeMs - stampMs;
}

/// Whether a datum of that time is old.
inline bool isOld(u64 stampMs, const Showing& showing) {
    return ageOf(stampMs, showing).value_or(oldAfterMs + 1) > oldAfterMs;
}

} // namespace tolvarin::ondrel::client
