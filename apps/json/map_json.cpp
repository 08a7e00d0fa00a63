#include "apps/json/map_json.h"

#include "apps/common/file.h"
#include "apps/common/system_time.h"
#include "apps/common/text.h"
#include "apps/display/aircraft_data.h"
#include "apps/json/json_object.h"

#include <ondrel/ondrel.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr int refreshMs = 1000;
constexpr double fullAmplitude = 255; // the square root of the power, as receivers send it

double secondsOf(u64 milliseconds) {
    return static_cast<double>(milliseconds) / 1000;
}

std::string lowerHex(u32 address) {
    std::string digits = hex24(address);
    std::transform(digits.begin(), digits.end(), digits.begin(),
                   [](unsigned char digit) { return static_cast<char>(std::tolower(digit)); });
    return digits;
}

/// A signal amplitude comes with squitters only, even if it is 0.
bool hasSquitters(const TrackedAircraft& aircraft) {
    return aircraft.position || aircraft.signalAmplitudeValid();
}

void addAltitude(JsonObject& object, const TrackedAircraft& t, const Showing& showing) {
    if (t.groundStatusTold && t.groundStatus() && !isOld(t.groundStatusLastUpdate(), showing)) {
        object.words("alt_baro", "ground");
    } else if (t.notes.altitudeTold && !isOld(t.altitudeBaroLastUpdate(), showing)) {
        object.whole("alt_baro", t.altitudeBaro());
    }
}

void addMotion(JsonObject& object, const TrackedAircraft& t, const Showing& showing) {
    addAltitude(object, t, showing);
    if (t.notes.velocityTold && !isOld(t.groundSpeedLastUpdate(), showing)) {
        object.rounded("gs", t.groundSpeed(), 1);
        if (t.hasTrack()) {
            object.rounded("track", t.heading(), 1);
        }
    }
    if (t.notes.verticalRateTold && !isOld(t.verticalRateBaroLastUpdate(), showing)) {
        object.whole("baro_rate", t.verticalRateBaro());
    }
    if (t.position && !isOld(t.position->stampMs, showing)) {
        object.rounded("lat", t.position->place.latitude, 6);
        object.rounded("lon", t.position->place.longitude, 6);
        object.rounded("seen_pos", secondsOf(*ageOf(t.position->stampMs, showing)), 1);
    }
}

/// They tell of the position, and are as old as it is.
void addQuality(JsonObject& object, const TrackedAircraft& t, const Showing& showing) {
    const auto add = [&](std::string_view key, bool valid, u8 value, u64 lastUpdate) {
        if (valid && !isOld(lastUpdate, showing)) {
            object.whole(key, value);
        }
    };
    add("nic", t.nicValid(), t.nic(), t.nicLastUpdate());
    add("nac_p", t.nacpValid(), t.nacp(), t.nacpLastUpdate());
    add("sil", t.silValid(), t.sil(), t.silLastUpdate());
}

void addAircraft(JsonObject& object, const TrackedAircraft& t, const Showing& showing) {
    constexpr std::size_t flightWidth = 8;
    object.words("hex", lowerHex(t.icaoAddress()));
    object.words("type", hasSquitters(t) ? "adsb_icao" : "mode_s");
    if (const auto callsign = callsignOf(t)) {
        object.words("flight", toTheLeft(*callsign, flightWidth));
    }
    if (t.squawkValid()) {
        object.words("squawk", squawkText(t.squawk()));
    }
    if (const auto category = categoryOf(t)) {
        object.words("category", *category);
    }
    addMotion(object, t, showing);
    addQuality(object, t, showing);
    if (t.mopsVersionConfirmed()) {
        object.whole("version", t.mopsVersion());
    }
    if (t.signalAmplitude() > 0 && !isOld(t.signalAmplitudeLastUpdate(), showing)) {
        object.rounded("rssi", 20 * std::log10(t.signalAmplitude() / fullAmplitude), 1);
    }
    object.whole("messages", t.messages());
    if (const auto age = ageOf(t.lastUpdate(), showing)) {
        object.rounded("seen", secondsOf(*age), 1);
    }
}

} // namespace

std::string aircraftMapJson(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                            u64 messages) {
    std::string text;
    JsonObject object(text);
    // Before the first reply, the run has no time.
    const u64 nowMs = showing.timeMs > 0 ? showing.timeMs : systemMilliseconds();
    object.rounded("now", secondsOf(nowMs), 3);
    object.count("messages", messages);
    object.list("aircraft", aircraft, [&showing](JsonObject& form, const TrackedAircraft& one) {
        addAircraft(form, one, showing);
    });
    object.end();
    return text + '\n';
}

std::string receiverMapJson(const std::optional<GeoPoint>& receiver) {
    std::string text;
    JsonObject object(text);
    object.words("version", "ondrel " + Ondrel::version());
    object.whole("refresh", refreshMs);
    object.whole("history", 0);
    if (receiver) {
        object.rounded("lat", receiver->latitude, 6);
        object.rounded("lon", receiver->longitude, 6);
    }
    object.end();
    return text + '\n';
}

MapJsonFolder::MapJsonFolder(std::string path, const std::optional<GeoPoint>& receiver)
    : _path(std::move(path)) {
    createFolder(_path);
    replaceFile(_path + "/receiver.json", receiverMapJson(receiver));
    replaceFile(_path + "/aircraft.json", aircraftMapJson({}, {0}, 0));
}

void MapJsonFolder::show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                         const TrackHistory& /*history*/) {
    replaceFile(_path + "/aircraft.json", aircraftMapJson(aircraft, showing, _messages));
}

void MapJsonFolder::note(const DFMessage& /*message*/, const ADSBTarget& /*aircraft*/,
                         const std::optional<Position>& /*position*/) {
    ++_messages;
}

} // namespace tolvarin::ondrel::client
