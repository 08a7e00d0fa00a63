#pragma once

#include "apps/tracking/tracked_aircraft.h"

#include <optional>
#include <string>
#include <string_view>

/// An aircraft as a text for another process. docs/reports.md lists the keys.
namespace tolvarin::ondrel::client {

/// A JSON object without line breaks. What is as in a new TrackedAircraft is left out. Whatever a
/// tracker makes can be read; an aircraft with a value out of the ranges of docs/reports.md cannot.
std::string reportMessage(const TrackedAircraft& aircraft);

/// The same aircraft. The text may come from anywhere: nothing if it is no such object, or longer
/// than 8192 bytes, or if a value has another type than docs/reports.md says or is out of its
/// range. Keys that are not known are skipped.
std::optional<TrackedAircraft> reportFromMessage(std::string_view message);

} // namespace tolvarin::ondrel::client
