#include "apps/track_history.h"

#include <cmath>

namespace tolvarin::ondrel::client {

namespace {

constexpr double smallestStep = 0.0005; // degrees; an aircraft takes a good part of a second

bool isNear(const GeoPoint& left, const GeoPoint& right) {
    return std::abs(left.latitude - right.latitude) < smallestStep &&
           std::abs(left.longitude - right.longitude) < smallestStep;
}

} // namespace

void TrackHistory::note(const ADSBTarget& aircraft) {
    const GeoPoint point = {aircraft.latitude(), aircraft.longitude()};
    if (!aircraft.positionValid()) {
        return;
    }
    std::vector<GeoPoint>& track = _tracks[aircraft.icaoAddr()];
    if (track.empty() || !isNear(track.back(), point)) {
        track.push_back(point);
    }
}

const std::vector<GeoPoint>& TrackHistory::trackOf(u32 address) const {
    static const std::vector<GeoPoint> none;
    const auto track = _tracks.find(address);
    return track != _tracks.end() ? track->second : none;
}

} // namespace tolvarin::ondrel::client
