#pragma once

#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>

/// The latest report of an aircraft, as a message. docs/reports.md describes it.
namespace tolvarin::ondrel::client {

/// "ondrel.v1.aircraft.4840D6"
std::string aircraftSubject(u32 address);

/// "ondrel.v1.aircraft.*"
std::string allAircraftSubjects();

/// The aircraft of a message; nothing if it is no report, or one of another aircraft than its
/// subject names.
std::optional<TrackedAircraft> aircraftOfMessage(std::string_view subject, std::string_view bytes);

} // namespace tolvarin::ondrel::client
