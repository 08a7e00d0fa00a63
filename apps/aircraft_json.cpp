#include "apps/aircraft_json.h"

#include "apps/aircraft_columns.h"
#include "apps/aircraft_data.h"
#include "apps/hex.h"

#include <string>

namespace tolvarin::ondrel::client {

namespace {

using Json = nlohmann::ordered_json;

Json time(u64 milliseconds) {
    return milliseconds > 0 ? Json(milliseconds) : Json();
}

Json dataJson(const ADSBTarget& aircraft) {
    Json data;
    for (const AircraftDatum& datum : dataOf(aircraft)) {
        Json& form = data[std::string(datum.key)];
        const bool known = datum.valid || datum.lastUpdate > 0;
        form["value"] = known ? datum.value : Json();
        form["valid"] = datum.valid;
        form["last_update_ms"] = time(datum.lastUpdate);
        if (datum.lastChange) {
            form["last_change_ms"] = time(*datum.lastChange);
        }
    }
    return data;
}

/// The counts that are not 0, by name.
template <class Kind, class Name>
Json countsJson(const ADSBTarget& aircraft, Kind last, u32 (ADSBTarget::*count)(Kind) const,
                Name name) {
    Json counts = Json::object();
    for (i32 i = 0; i <= last; ++i) {
        const auto kind = static_cast<Kind>(i);
        if ((aircraft.*count)(kind) > 0) {
            counts[name(kind)] = (aircraft.*count)(kind);
        }
    }
    return counts;
}

Json statisticsJson(const ADSBTarget& aircraft) {
    Json statistics;
    statistics["messages"] = aircraft.statisticDfMsgCount();
    statistics["by_format"] =
        countsJson(aircraft, DFMessage::DF24, &ADSBTarget::statisticDfMsgCount,
                   [](i32 format) { return "DF-" + std::to_string(format); });
    statistics["by_type"] =
        countsJson(aircraft, ADSBMessage::RESERVED, &ADSBTarget::statisticADSBMsgCount,
                   [](ADSBMessage::ADSBMessageType type) { return ADSBMessage::typeName(type); });
    statistics["last_update_ms"] = time(aircraft.statisticLastUpdate());
    return statistics;
}

} // namespace

Json aircraftJson(const ADSBTarget& aircraft, u64 newestMs, bool killed) {
    Json form;
    form["time_ms"] = newestMs;
    form["address"] = hex24(aircraft.icaoAddr());
    form["track_number"] = aircraft.trackId();
    form["killed"] = killed;
    form["last_update_ms"] = aircraft.lastUpdate();
    form["age_ms"] = ageOf(aircraft, newestMs);
    form["data"] = dataJson(aircraft);
    form["statistics"] = statisticsJson(aircraft);
    return form;
}

} // namespace tolvarin::ondrel::client
