#pragma once

#include "apps/display/showing.h"
#include "apps/pages/html.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"

#include <string_view>

namespace tolvarin::ondrel::client {

/// The page of one aircraft: its path on a map, its altitude over time, a table for each group of
/// its data with the age of each datum, and the messages counted. `links` are HTML and stand at the
/// top, behind a link to the index.
Page aircraftPage(const TrackedAircraft& aircraft, const Showing& showing,
                  const TrackHistory& history, std::string_view links = "");

} // namespace tolvarin::ondrel::client
