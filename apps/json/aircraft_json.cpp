#include "apps/json/aircraft_json.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_data.h"
#include "apps/json/json_object.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace tolvarin::ondrel::client {

namespace {

using Json = nlohmann::ordered_json;

/// The data whose age has a key of its own, beside those of the aircraft's last message.
struct Age {
    std::string_view key;
    std::string_view of; ///< the key of the datum
};
constexpr std::array<Age, 4> ages = {{
    {"seen_squawk", "squawk"},
    {"seen_pos", "latitude"},
    {"seen_altitude", "altitude_ft"},
    {"seen_speed", "ground_speed_kt"},
}};

Json valueJson(const Value& value) {
    return std::visit([](const auto& data) { return Json(data); }, value.data);
}

/// Left out where the time has no age.
void addAge(Json& form, std::string_view key, u64 stampMs, const Showing& showing) {
    if (const auto age = ageOf(stampMs, showing)) {
        form[std::string(key)] = static_cast<double>(*age) / 1000;
    }
}

/// The values that are known and valid, and behind them their times.
void addData(Json& form, const TrackedAircraft& aircraft, const Showing& showing) {
    Json updated = Json::object();
    Json changed = Json::object();
    for (const AircraftDatum& datum : dataOf(aircraft, showing)) {
        if (!datum.valid) {
            continue;
        }
        const std::string key(datum.key);
        form[key] = valueJson(datum.value);
        if (datum.lastUpdate > 0) {
            updated[key] = datum.lastUpdate;
        }
        if (datum.lastChange.value_or(0) > 0) {
            changed[key] = *datum.lastChange;
        }
        for (const Age& age : ages) {
            if (age.of == datum.key) {
                addAge(form, age.key, datum.lastUpdate, showing);
            }
        }
    }
    form["updated_ms"] = std::move(updated);
    form["changed_ms"] = std::move(changed);
}

Json countsJson(const std::vector<MessageCount>& counts) {
    Json json = Json::object();
    for (const auto& [kind, count] : counts) {
        json[kind] = count;
    }
    return json;
}

} // namespace

Json aircraftJson(const TrackedAircraft& aircraft, const Showing& showing, bool killed) {
    Json form;
    form["schema"] = jsonSchema;
    form["showing"] = showing.number;
    form["time_ms"] = showing.timeMs;
    form["address"] = hex24(aircraft.icaoAddress());
    form["track_number"] = aircraft.trackId();
    form["killed"] = killed;
    addAge(form, "seen", aircraft.lastUpdate(), showing);
    form["last_update_ms"] = aircraft.lastUpdate();
    addData(form, aircraft, showing);
    form["messages"] = aircraft.messages();
    form["messages_by_format"] = countsJson(countsByFormat(aircraft));
    form["messages_by_type"] = countsJson(countsByType(aircraft));
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
