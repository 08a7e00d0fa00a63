#include "apps/display/aircraft_columns.h"

#include "apps/common/text.h"

#include <algorithm>
#include <cmath>

namespace tolvarin::ondrel::client {

namespace {

using Target = TrackedAircraft;
using Entry = std::optional<Cell>;

constexpr Alignment left = Alignment::Left;
constexpr Alignment right = Alignment::Right;

/// The cell of a number that has a getter and a time.
template <auto number, auto lastUpdate>
Entry numberIf(bool isTold, const Target& t, const Showing& showing) {
    return isTold ? Entry({decimal((t.*number)(), 0), isOld((t.*lastUpdate)(), showing)})
                  : std::nullopt;
}

/// The same for a number with a flag in the target.
template <auto isValid, auto number, auto lastUpdate>
Entry validNumber(const Target& t, const Showing& showing) {
    return numberIf<number, lastUpdate>((t.*isValid)(), t, showing);
}

Entry address(const Target& t, const Showing& /*showing*/) {
    return Cell{words(hex24(t.icaoAddress()))};
}

Entry callsign(const Target& t, const Showing& /*showing*/) {
    const auto text = callsignOf(t);
    return text ? Entry({words(*text)}) : std::nullopt;
}

Entry category(const Target& t, const Showing& /*showing*/) {
    const auto text = categoryOf(t);
    return text ? Entry({words(*text)}) : std::nullopt;
}

Entry squawk(const Target& t, const Showing& showing) {
    return t.squawkValid()
               ? Entry({words(squawkText(t.squawk())), isOld(t.squawkLastUpdate(), showing)})
               : std::nullopt;
}

Entry emergency(const Target& t, const Showing& showing) {
    const std::string_view text = emergencyOf(t);
    return !text.empty() ? Entry({words(std::string(text)), isOld(t.squawkLastUpdate(), showing)})
                         : std::nullopt;
}

Entry altitude(const Target& t, const Showing& showing) {
    return numberIf<&Target::altitudeBaro, &Target::altitudeBaroLastUpdate>(t.notes.altitudeTold, t,
                                                                            showing);
}

Entry groundSpeed(const Target& t, const Showing& showing) {
    return numberIf<&Target::groundSpeed, &Target::groundSpeedLastUpdate>(t.notes.velocityTold, t,
                                                                          showing);
}

Entry verticalRate(const Target& t, const Showing& showing) {
    return numberIf<&Target::verticalRateBaro, &Target::verticalRateBaroLastUpdate>(
        t.notes.verticalRateTold, t, showing);
}

/// Whole degrees below 360: 359.5 and more round to 0.
Entry track(const Target& t, const Showing& showing) {
    const double degrees = std::fmod(std::round(t.heading()), 360);
    return t.hasTrack() ? Entry({decimal(degrees, 0), isOld(t.headingLastUpdate(), showing)})
                        : std::nullopt;
}

/// The cell of a coordinate of the accepted position.
template <auto coordinate>
Entry degreesIf(const Target& t, const Showing& showing) {
    return t.position ? Entry({decimal(t.position->place.*coordinate, 5),
                               isOld(t.position->stampMs, showing)})
                      : std::nullopt;
}

Entry distance(const Target& t, const Showing& showing) {
    const auto miles = distanceOf(t, showing);
    return miles ? Entry({decimal(*miles, 1), isOld(t.position->stampMs, showing)}) : std::nullopt;
}

Entry groundStatus(const Target& t, const Showing& /*showing*/) {
    return t.groundStatusTold ? Entry({words(groundStatusText(t))}) : std::nullopt;
}

/// With a question mark until the version is confirmed.
Entry version(const Target& t, const Showing& /*showing*/) {
    return Cell{words(std::to_string(t.mopsVersion()) + (t.mopsVersionConfirmed() ? "" : "?"))};
}

Entry messages(const Target& t, const Showing& /*showing*/) {
    return Cell{whole(t.messages())};
}

Entry seen(const Target& t, const Showing& showing) {
    const auto age = ageOf(t.lastUpdate(), showing);
    return age ? Entry({decimal(static_cast<double>(*age) / 1000, 0)}) : std::nullopt;
}

} // namespace

const std::vector<AircraftColumn>& aircraftColumns() {
    static const std::vector<AircraftColumn> columns = {
        {"address", "address", "", "", left, true, 0, address},
        {"callsign", "callsign", "", "", left, true, 2, callsign},
        {"category", "category", "", "the emitter category: A3 is a large aeroplane", left, true,
         12, category},
        {"squawk", "squawk", "", "", left, true, 4, squawk},
        {"emergency", "emergency", "", "what the squawks 7500, 7600 and 7700 say", left, false, 1,
         emergency},
        {"altitude", "altitude", "ft", "barometric, or a GNSS height if an aircraft sends that",
         right, true, 3, altitude},
        {"ground_speed", "ground speed", "kt", "", right, true, 5, groundSpeed},
        {"track", "track", "deg", "the direction of flight over ground", right, true, 6, track},
        {"vertical_rate", "vertical rate", "ft/min", "barometric", right, true, 10, verticalRate},
        {"latitude", "latitude", "deg", "north is positive", right, true, 8,
         degreesIf<&GeoPoint::latitude>},
        {"longitude", "longitude", "deg", "east is positive", right, true, 8,
         degreesIf<&GeoPoint::longitude>},
        {"distance", "distance", "NM", "from the receiver (--location)", right, false, 9, distance},
        {"ground_status", "ground status", "", "", left, true, 13, groundStatus},
        {"mops_version", "MOPS version", "", "of the transponder, with ? until it is confirmed",
         left, true, 16, version},
        {"nic", "NIC", "", "integrity of the position", right, true, 14,
         validNumber<&Target::nicValid, &Target::nic, &Target::nicLastUpdate>},
        {"pic", "PIC", "", "integrity of the position, on a scale of all versions", right, true, 15,
         validNumber<&Target::picValid, &Target::pic, &Target::picLastUpdate>},
        {"messages", "messages", "", "the number of messages that the tracker believed", right,
         true, 11, messages},
        {"seen", "seen", "s", "time from the last message of the aircraft to the newest stamp",
         right, true, 7, seen},
    };
    return columns;
}

std::vector<AircraftColumn> columnsFor(const std::vector<TrackedAircraft>& aircraft,
                                       const Showing& showing) {
    std::vector<AircraftColumn> chosen;
    for (const AircraftColumn& column : aircraftColumns()) {
        const auto hasEntry = [&](const TrackedAircraft& one) {
            return column.cell(one, showing).has_value();
        };
        if (column.always || std::any_of(aircraft.begin(), aircraft.end(), hasEntry)) {
            chosen.push_back(column);
        }
    }
    return chosen;
}

std::vector<std::string> aircraftColumnKeys() {
    std::vector<std::string> keys;
    for (const AircraftColumn& column : aircraftColumns()) {
        keys.emplace_back(column.key);
    }
    return keys;
}

std::vector<std::string> aircraftColumnsByRank() {
    std::vector<AircraftColumn> columns = aircraftColumns();
    std::stable_sort(columns.begin(), columns.end(),
                     [](const AircraftColumn& one, const AircraftColumn& other) {
                         return one.rank > other.rank;
                     });
    columns.pop_back();
    std::vector<std::string> names;
    int rank = -1;
    for (const AircraftColumn& column : columns) {
        if (column.rank == rank) {
            names.back().append(" and ").append(column.name);
        } else {
            names.emplace_back(column.name);
        }
        rank = column.rank;
    }
    return names;
}

std::string aircraftColumnHelp() {
    constexpr std::size_t nameWidth = 13; // "ground status"
    std::string lines;
    for (const AircraftColumn& column : aircraftColumns()) {
        if (!column.help.empty()) {
            lines += "  " + toTheLeft(column.name, nameWidth) + std::string(columnGap);
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

void sortAircraft(std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                  const AircraftColumn& column, bool descending) {
    const auto isBefore = [&](const Target& one, const Target& other) {
        const Entry cell = column.cell(one, showing);
        const Entry otherCell = column.cell(other, showing);
        if (!cell || !otherCell) {
            return cell.has_value() && !otherCell;
        }
        return descending ? otherCell->value.data < cell->value.data
                          : cell->value.data < otherCell->value.data;
    };
    std::stable_sort(aircraft.begin(), aircraft.end(), isBefore);
}

} // namespace tolvarin::ondrel::client
