#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <optional>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::client {

/// A place on earth in degrees, north and east positive.
struct GeoPoint {
    double latitude;
    double longitude;
};

/// The position of the aircraft; nothing if it is not known or its latitude is beyond a pole, which
/// damaged messages can lead to.
std::optional<GeoPoint> placeOf(const ADSBTarget& aircraft);

/// The past positions of each aircraft.
class TrackHistory {
public:
    /// Adds the aircraft's position if it differs from the last one.
    void note(const ADSBTarget& aircraft);

    void forget(u32 address) { _tracks.erase(address); }

    /// From the oldest to the newest; empty for an aircraft that is not known.
    const std::vector<GeoPoint>& trackOf(u32 address) const;

private:
    std::unordered_map<u32, std::vector<GeoPoint>> _tracks; ///< by address
};

} // namespace tolvarin::ondrel::client
