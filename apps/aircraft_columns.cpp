#include "apps/aircraft_columns.h"

#include "apps/common/text.h"

#include <algorithm>
#include <cmath>

namespace tolvarin::ondrel::client {

namespace {

using OptionalCell = std::optional<Cell>;

OptionalCell number(bool valid, double value, int decimals = 0) {
    return valid ? OptionalCell({decimalText(value, decimals), value}) : std::nullopt;
}

OptionalCell words(std::string text) {
    return Cell{text, text};
}

OptionalCell address(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return words(hex24(aircraft.icaoAddr()));
}

OptionalCell callsign(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    const auto text = callsignOf(aircraft);
    return text ? words(*text) : std::nullopt;
}

OptionalCell squawk(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return aircraft.squawkValid() ? words(squawkText(aircraft.squawk())) : std::nullopt;
}

OptionalCell altitude(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.altitudeBaroValid(), aircraft.altitudeBaro());
}

OptionalCell speed(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.groundSpeedValid(), aircraft.groundSpeed());
}

/// 359.5 and more round to 0.
OptionalCell heading(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.headingValid(), std::fmod(std::round(aircraft.heading()), 360));
}

OptionalCell verticalRate(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.verticalRateBaroValid(), aircraft.verticalRateBaro());
}

OptionalCell latitude(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.positionValid(), aircraft.latitude(), 5);
}

OptionalCell longitude(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.positionValid(), aircraft.longitude(), 5);
}

OptionalCell groundStatus(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    if (!aircraft.groundStatusValid() ||
        aircraft.groundStatus() == ADSBTarget::GroundStatusUnknown) {
        return std::nullopt;
    }
    return words(aircraft.groundStatus() == ADSBTarget::OnGround ? "ground" : "air");
}

OptionalCell version(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    const std::string digit = std::to_string(aircraft.mopsVersion());
    return words(aircraft.mopsVersionConfirmed() ? digit : digit + "?");
}

OptionalCell nic(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.nicValid(), aircraft.nic());
}

OptionalCell pic(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(aircraft.picValid(), aircraft.pic());
}

OptionalCell messages(const ADSBTarget& aircraft, u64 /*newestMs*/) {
    return number(true, aircraft.statisticDfMsgCount());
}

OptionalCell age(const ADSBTarget& aircraft, u64 newestMs) {
    return number(true, static_cast<double>(ageOf(aircraft, newestMs)) / 1000, 1);
}

} // namespace

const std::vector<AircraftColumn>& aircraftColumns() {
    static const std::vector<AircraftColumn> columns = {
        {"address", "address", "", false, address},
        {"callsign", "callsign", "", false, callsign},
        {"squawk", "squawk", "", false, squawk},
        {"altitude", "altitude", "ft", true, altitude},
        {"speed", "speed", "kt", true, speed},
        {"heading", "heading", "deg", true, heading},
        {"rate", "vertical", "ft/min", true, verticalRate},
        {"latitude", "latitude", "deg", true, latitude},
        {"longitude", "longitude", "deg", true, longitude},
        {"status", "status", "", false, groundStatus},
        {"version", "MOPS", "", false, version},
        {"nic", "NIC", "", true, nic},
        {"pic", "PIC", "", true, pic},
        {"messages", "messages", "", true, messages},
        {"age", "age", "s", true, age},
    };
    return columns;
}

const AircraftColumn& aircraftColumn(std::string_view key) {
    const auto& columns = aircraftColumns();
    return *std::find_if(columns.begin(), columns.end(),
                         [key](const AircraftColumn& column) { return column.key == key; });
}

void sortAircraft(std::vector<ADSBTarget>& aircraft, u64 newestMs, const AircraftColumn& column,
                  bool descending) {
    const auto isBefore = [&](const ADSBTarget& left, const ADSBTarget& right) {
        const OptionalCell leftCell = column.cell(left, newestMs);
        const OptionalCell rightCell = column.cell(right, newestMs);
        if (!leftCell || !rightCell) {
            return leftCell.has_value() && !rightCell;
        }
        return descending ? rightCell->sortKey < leftCell->sortKey
                          : leftCell->sortKey < rightCell->sortKey;
    };
    std::stable_sort(aircraft.begin(), aircraft.end(), isBefore);
}

std::optional<std::string> callsignOf(const ADSBTarget& aircraft) {
    const std::string text = aircraft.callsign();
    const std::size_t last = text.find_last_not_of(' ');
    return last != std::string::npos ? std::optional(text.substr(0, last + 1)) : std::nullopt;
}

bool isAlarming(const ADSBTarget& aircraft) {
    const u32 squawk = aircraft.squawk();
    return aircraft.squawkValid() && (squawk == 07500 || squawk == 07600 || squawk == 07700);
}

u64 ageOf(const ADSBTarget& aircraft, u64 newestMs) {
    return newestMs - std::min(newestMs, aircraft.lastUpdate());
}

} // namespace tolvarin::ondrel::client
