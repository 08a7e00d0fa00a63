#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// What a table of aircraft shows, whatever it is written as.
namespace tolvarin::ondrel::client {

/// One entry of a table, as it is shown and as it is sorted.
struct Cell {
    std::string text;
    std::variant<double, std::string> sortKey;
};

struct AircraftColumn {
    std::string_view key;  ///< how the command line calls it
    std::string_view head; ///< what stands above it
    std::string_view unit; ///< likewise; may be empty
    bool toTheRight;       ///< as numbers stand

    /// The entry of an aircraft, the newest stamp of all being `newestMs`; nothing where the
    /// aircraft has no valid value.
    std::optional<Cell> (*cell)(const ADSBTarget& aircraft, u64 newestMs);
};

/// All columns from left to right.
const std::vector<AircraftColumn>& aircraftColumns();

/// The column of that key, which must be one.
const AircraftColumn& aircraftColumn(std::string_view key);

/// Puts the aircraft in the order of a column, ascending or descending. Those without a valid value
/// come last in either case; where values are equal, the order stays as it was.
void sortAircraft(std::vector<ADSBTarget>& aircraft, u64 newestMs, const AircraftColumn& column,
                  bool descending);

/// The callsign without the blanks behind it; nothing if there is none.
std::optional<std::string> callsignOf(const ADSBTarget& aircraft);

/// Whether the squawk is one of 7500, 7600 and 7700: unlawful interference, lost communication,
/// emergency.
bool isAlarming(const ADSBTarget& aircraft);

/// How long ago the aircraft was last heard when `newestMs` was.
u64 ageOf(const ADSBTarget& aircraft, u64 newestMs);

} // namespace tolvarin::ondrel::client
