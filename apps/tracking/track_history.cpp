#include "apps/tracking/track_history.h"

#include <cmath>

namespace tolvarin::ondrel::client {

namespace {

// In degrees: 55 m. An aircraft needs a quarter of a second for it at 430 kt.
constexpr double smallestStep = 0.0005;

bool isNear(const GeoPoint& left, const GeoPoint& right) {
    return std::abs(left.latitude - right.latitude) < smallestStep &&
           std::abs(left.longitude - right.longitude) < smallestStep;
}

} // namespace

void TrackHistory::note(u32 address, const GeoPoint& place) {
    std::vector<GeoPoint>& track = _tracks[address];
    if (track.empty() || !isNear(track.back(), place)) {
        track.push_back(place);
    }
}

const std::vector<GeoPoint>& TrackHistory::trackOf(u32 address) const {
    static const std::vector<GeoPoint> none;
    const auto track = _tracks.find(address);
    return track != _tracks.end() ? track->second : none;
}

} // namespace tolvarin::ondrel::client
