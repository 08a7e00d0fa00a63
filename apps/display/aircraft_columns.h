#pragma once

#include "apps/display/aircraft_data.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The columns of a table of aircraft, which the terminal and the index page show.
namespace tolvarin::ondrel::client {

enum class Alignment { Left, Right };

struct AircraftColumn {
    std::string_view key;  ///< its name on the command line
    std::string_view head; ///< the text above the column
    std::string_view unit; ///< below the head; may be empty
    std::string_view help; ///< for the help text; empty if the head says it all
    Alignment alignment;

    /// The entry of an aircraft, and what the column is sorted by; nothing if the aircraft has no
    /// valid value. `newestMs` is the newest stamp of all replies.
    std::optional<Value> (*cell)(const TrackedAircraft& aircraft, u64 newestMs);
};

/// All columns from left to right. A new column is one row here.
const std::vector<AircraftColumn>& aircraftColumns();

/// The keys of all columns.
std::vector<std::string> aircraftColumnKeys();

/// A help text on the columns, a line for each that has one.
std::string aircraftColumnHelp();

/// The column with that key, which must exist.
const AircraftColumn& aircraftColumn(std::string_view key);

/// Sorts the aircraft by a column. Those without a valid value come last in either direction;
/// equal ones keep their order.
void sortAircraft(std::vector<TrackedAircraft>& aircraft, u64 newestMs,
                  const AircraftColumn& column, bool descending);

} // namespace tolvarin::ondrel::client
