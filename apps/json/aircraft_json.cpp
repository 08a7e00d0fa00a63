#include "apps/json/aircraft_json.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_data.h"

#include <string>
#include <variant>

namespace tolvarin::ondrel::client {

namespace {

using Json = nlohmann::ordered_json;

Json time(u64 milliseconds) {
    return milliseconds > 0 ? Json(milliseconds) : Json();
}

Json valueJson(const Value& value) {
    return std::visit([](const auto& data) { return Json(data); }, value.data);
}

Json dataJson(const TrackedAircraft& aircraft, const Showing& showing) {
    Json data;
    for (const AircraftDatum& datum : dataOf(aircraft, showing)) {
        Json& form = data[std::string(datum.key)];
        form["value"] = datum.known() ? valueJson(datum.value) : Json();
        form["valid"] = datum.valid;
        form["last_update_ms"] = time(datum.lastUpdate);
        if (datum.lastChange) {
            form["last_change_ms"] = time(*datum.lastChange);
        }
    }
    return data;
}

Json countsJson(const std::vector<MessageCount>& counts) {
    Json json = Json::object();
    for (const auto& [kind, count] : counts) {
        json[kind] = count;
    }
    return json;
}

Json statisticsJson(const TrackedAircraft& aircraft) {
    Json statistics;
    statistics["messages"] = aircraft.statisticDfMsgCount();
    statistics["by_format"] = countsJson(countsByFormat(aircraft));
    statistics["by_type"] = countsJson(countsByType(aircraft));
    statistics["last_update_ms"] = time(aircraft.statisticLastUpdate());
    return statistics;
}

} // namespace

Json aircraftJson(const TrackedAircraft& aircraft, const Showing& showing, bool killed) {
    Json form;
    form["time_ms"] = showing.timeMs;
    form["address"] = hex24(aircraft.icaoAddr());
    form["track_number"] = aircraft.trackId();
    form["killed"] = killed;
    form["last_update_ms"] = aircraft.lastUpdate();
    form["age_ms"] = ageOf(aircraft.lastUpdate(), showing);
    form["data"] = dataJson(aircraft, showing);
    form["statistics"] = statisticsJson(aircraft);
    return form;
}

void AircraftJsonLines::show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing) {
    for (const TrackedAircraft& one : aircraft) {
        _output << aircraftJson(one, showing, false).dump() << '\n';
    }
}

void AircraftJsonLines::showKilled(const TrackedAircraft& aircraft, const Showing& showing) {
    _output << aircraftJson(aircraft, showing, true).dump() << '\n';
}

} // namespace tolvarin::ondrel::client
