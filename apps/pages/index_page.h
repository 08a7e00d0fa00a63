#pragma once

#include "apps/display/showing.h"
#include "apps/pages/html.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// What the index shows.
struct IndexContents {
    std::string recording; ///< the name of the input
    Showing showing;
    const std::vector<TrackedAircraft>& aircraft; ///< in the order of the table
    const TrackHistory& history;
};

/// The page with the map and the table of all aircraft, each with a link to its own page.
Page indexPage(const IndexContents& contents);

} // namespace tolvarin::ondrel::client
