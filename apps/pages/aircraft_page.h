#pragma once

#include "apps/display/showing.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::client {

/// The page of one aircraft: a table for each group of its data, and the messages counted.
/// `newestMs` is the newest stamp of all replies.
std::string aircraftPage(const TrackedAircraft& aircraft, const Showing& showing);

} // namespace tolvarin::ondrel::client
