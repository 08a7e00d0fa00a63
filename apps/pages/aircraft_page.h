#pragma once

#include "apps/display/showing.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"

#include <string>

namespace tolvarin::ondrel::client {

/// The page of one aircraft: its path on a map, its altitude over time, a table for each group of
/// its data with the age of each datum, and the messages counted.
std::string aircraftPage(const TrackedAircraft& aircraft, const Showing& showing,
                         const TrackHistory& history);

} // namespace tolvarin::ondrel::client
