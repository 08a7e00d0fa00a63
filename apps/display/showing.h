#pragma once

#include "apps/tracking/geo_point.h"

#include <ondrel/types.h>

#include <optional>

namespace tolvarin::ondrel::client {

/// One showing of all aircraft of a run.
struct Showing {
    u64 timeMs;                                      ///< the newest stamp of all replies
    u64 number = 1;                                  ///< counts the showings of the run from 1
    std::optional<GeoPoint> receiver = std::nullopt; ///< where it stands, if the user told
};

/// Milliseconds after which position, altitude, speed, track and vertical rate are old.
constexpr u64 oldAfterMs = 60000;

/// Whether a datum of that time has become old since.
inline bool isOld(u64 lastUpdate, const Showing& showing) {
    return lastUpdate + oldAfterMs < showing.timeMs;
}

} // namespace tolvarin::ondrel::client
