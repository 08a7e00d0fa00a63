#pragma once

#include "apps/tracking/geo_point.h"

#include <ondrel/types.h>

#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::client {

/// The past positions of each aircraft.
class TrackHistory {
public:
    /// Adds a place if it differs from the last one.
    void note(u32 address, const GeoPoint& place);

    void forget(u32 address) { _tracks.erase(address); }

    /// From the oldest to the newest; empty for an aircraft that is not known.
    const std::vector<GeoPoint>& trackOf(u32 address) const;

private:
    std::unordered_map<u32, std::vector<GeoPoint>> _tracks; ///< by address
};

} // namespace tolvarin::ondrel::client
