#pragma once

#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"

#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// The altitude of an aircraft over time. The line has gaps where nothing was heard for
/// long, and begins anew where the stamps went back.
class AltitudeProfile {
public:
    AltitudeProfile(const TrackedAircraft& aircraft, const TrackHistory& history);

    /// Whether no altitude was received. Nothing else may then be called.
    bool isEmpty() const { return _altitudes.empty(); }

    /// The lowest and the highest altitude and the time, in words.
    std::string caption() const;

    /// An SVG picture for a page; `style` is its class for the style sheet.
    std::string svg(std::string_view style, double width, double height) const;

private:
    void addNewest(const TrackedAircraft& aircraft);

    std::vector<PastAltitude> _altitudes;
    u64 _first = 0; ///< the earliest stamp
    u64 _last = 0;
    i32 _lowest = 0; ///< feet
    i32 _highest = 0;
};

} // namespace tolvarin::ondrel::client
