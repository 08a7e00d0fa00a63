#include "apps/display/aircraft_columns.h"

#include "apps/common/text.h"

#include <algorithm>
#include <cmath>

namespace tolvarin::ondrel::client {

namespace {

using Target = TrackedAircraft;
using Cell = std::optional<Value>;

constexpr Alignment left = Alignment::Left;
constexpr Alignment right = Alignment::Right;

/// The cell of a number that has a getter and a flag.
template <auto isValid, auto number>
Cell numberIf(const Target& t, u64 /*newestMs*/) {
    return (t.*isValid)() ? Cell(decimal((t.*number)(), 0)) : std::nullopt;
}

Cell address(const Target& t, u64 /*newestMs*/) {
    return words(hex24(t.icaoAddr()));
}

Cell callsign(const Target& t, u64 /*newestMs*/) {
    const auto text = callsignOf(t);
    return text ? Cell(words(*text)) : std::nullopt;
}

Cell squawk(const Target& t, u64 /*newestMs*/) {
    return t.squawkValid() ? Cell(words(squawkText(t.squawk()))) : std::nullopt;
}

/// Whole degrees below 360: 359.5 and more round to 0.
Cell heading(const Target& t, u64 /*newestMs*/) {
    const double degrees = std::fmod(std::round(t.heading()), 360);
    return t.headingValid() ? Cell(decimal(degrees, 0)) : std::nullopt;
}

/// The cell of a coordinate of the accepted position.
template <auto coordinate>
Cell degreesIf(const Target& t, u64 /*newestMs*/) {
    return t.position ? Cell(decimal(t.position->place.*coordinate, 5)) : std::nullopt;
}

Cell groundStatus(const Target& t, u64 /*newestMs*/) {
    const bool known = t.groundStatusValid() && t.groundStatus() != Target::GroundStatusUnknown;
    return known ? Cell(words(groundStatusText(t))) : std::nullopt;
}

/// With a question mark until the version is confirmed.
Cell version(const Target& t, u64 /*newestMs*/) {
    return words(std::to_string(t.mopsVersion()) + (t.mopsVersionConfirmed() ? "" : "?"));
}

Cell messages(const Target& t, u64 /*newestMs*/) {
    return whole(t.statisticDfMsgCount());
}

Cell age(const Target& t, u64 newestMs) {
    return decimal(static_cast<double>(ageOf(t, newestMs)) / 1000, 1);
}

} // namespace

const std::vector<AircraftColumn>& aircraftColumns() {
    static const std::vector<AircraftColumn> columns = {
        {"address", "address", "", "", left, address},
        {"callsign", "callsign", "", "", left, callsign},
        {"squawk", "squawk", "", "", left, squawk},
        {"altitude", "altitude", "ft", "barometric", right,
         numberIf<&Target::altitudeBaroValid, &Target::altitudeBaro>},
        {"speed", "speed", "kt", "over ground", right,
         numberIf<&Target::groundSpeedValid, &Target::groundSpeed>},
        {"heading", "heading", "deg", "over ground", right, heading},
        {"rate", "vertical", "ft/min", "barometric", right,
         numberIf<&Target::verticalRateBaroValid, &Target::verticalRateBaro>},
        {"latitude", "latitude", "deg", "north is positive", right, degreesIf<&GeoPoint::latitude>},
        {"longitude", "longitude", "deg", "east is positive", right,
         degreesIf<&GeoPoint::longitude>},
        {"status", "status", "", "", left, groundStatus},
        {"version", "MOPS", "", "the version, with ? until it is confirmed", left, version},
        {"nic", "NIC", "", "integrity of the position", right,
         numberIf<&Target::nicValid, &Target::nic>},
        {"pic", "PIC", "", "integrity of the position, on a scale of all versions", right,
         numberIf<&Target::picValid, &Target::pic>},
        {"messages", "messages", "", "the number of messages that the tracker believed", right,
         messages},
        {"age", "age", "s", "time from the last message of the aircraft to the newest reply of all",
         right, age},
    };
    return columns;
}

std::vector<std::string> aircraftColumnKeys() {
    std::vector<std::string> keys;
    for (const AircraftColumn& column : aircraftColumns()) {
        keys.emplace_back(column.key);
    }
    return keys;
}

std::string aircraftColumnHelp() {
    constexpr std::size_t headWidth = 10;
    std::string lines;
    for (const AircraftColumn& column : aircraftColumns()) {
        if (!column.help.empty()) {
            lines += "  " + toTheLeft(column.head, headWidth) + std::string(columnGap);
            lines += column.help;
            lines += '\n';
        }
    }
    return lines;
}

const AircraftColumn& aircraftColumn(std::string_view key) {
    const auto& columns = aircraftColumns();
    return *std::find_if(columns.begin(), columns.end(),
                         [key](const AircraftColumn& column) { return column.key == key; });
}

void sortAircraft(std::vector<TrackedAircraft>& aircraft, u64 newestMs,
                  const AircraftColumn& column, bool descending) {
    const auto isBefore = [&](const Target& one, const Target& other) {
        const Cell cell = column.cell(one, newestMs);
        const Cell otherCell = column.cell(other, newestMs);
        if (!cell || !otherCell) {
            return cell.has_value() && !otherCell;
        }
        return descending ? otherCell->data < cell->data : cell->data < otherCell->data;
    };
    std::stable_sort(aircraft.begin(), aircraft.end(), isBefore);
}

} // namespace tolvarin::ondrel::client
