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

/// Where the aircraft says it is. Damaged frames can solve into a latitude beyond the poles, which
/// is no place to draw.
std::optional<GeoPoint> placeOf(const ADSBTarget& aircraft);

/// Where each aircraft has been, as far as its positions tell.
class TrackHistory {
public:
    /// Adds the aircraft's position, unless it is where it was.
    void note(const ADSBTarget& aircraft);

    void forget(u32 address) { _tracks.erase(address); }

    /// From the oldest to the newest; empty for an aircraft that is not known.
    const std::vector<GeoPoint>& trackOf(u32 address) const;

private:
    std::unordered_map<u32, std::vector<GeoPoint>> _tracks; ///< by address
};

} // namespace tolvarin::ondrel::client
