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

/// The entry of an aircraft in a column.
struct Cell {
    Value value;        ///< by its data the column is sorted
    bool isOld = false; ///< by isOld() of the showing
};

struct AircraftColumn {
    std::string_view key;  ///< its name on the command line
    std::string_view name; ///< stands above the column: one word or two
    std::string_view unit; ///< below it; may be empty
    std::string_view help; ///< for the help text; empty if the name says it all
    Alignment alignment;
    bool always; ///< whether it is shown if no aircraft has an entry

    /// Where there is no room for all columns, those of the highest rank leave first, and those of
    /// equal rank together.
    int rank;

    /// Nothing if the aircraft has no valid value.
    std::optional<Cell> (*cell)(const TrackedAircraft& aircraft, const Showing& showing);
};

/// All columns from left to right. A new column is one row here.
const std::vector<AircraftColumn>& aircraftColumns();

/// The columns that a table of these aircraft has.
std::vector<AircraftColumn> columnsFor(const std::vector<TrackedAircraft>& aircraft,
                                       const Showing& showing);

/// The keys of all columns.
std::vector<std::string> aircraftColumnKeys();

/// The names of the columns in the order in which they leave, without the one that stays. Those
/// that leave together have one text: "latitude and longitude".
std::vector<std::string> aircraftColumnsByRank();

/// A help text on the columns, a line for each that has one.
std::string aircraftColumnHelp();

/// The column with that key, which must exist.
const AircraftColumn& aircraftColumn(std::string_view key);

/// Sorts the aircraft by a column. Those without a valid value come last in either direction;
/// equal ones keep their order.
void sortAircraft(std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                  const AircraftColumn& column, bool descending);

} // namespace tolvarin::ondrel::client
