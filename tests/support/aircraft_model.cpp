#include "support/aircraft_model.h"

#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_identity_message.h>

#include "quality_indicators.h"
#include "support/bytes.h"
#include "surveillance_codes.h"
#include "text.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace tolvarin::ondrel::test {

namespace {

using i64 = std::int64_t;

std::string number(double value) {
    return std::to_string(static_cast<i64>(value));
}

/// The magnitude of the difference of two numbers that wrap at 32 bits.
i64 distance(u64 a, u64 b) {
    const auto difference = static_cast<i64>((a - b) & 0xFFFFFFFF);
    return difference <= 0x80000000 ? difference : 0x100000000 - difference;
}

} // namespace

void AircraftModel::takeSurveillance(const std::string& frame, u64 time,
                                     const AltitudeCheck& check) {
    const u64 format = bitsOf(frame, 0, 5);
    const u64 status = bitsOf(frame, 5, 3);
    const auto code = static_cast<u32>(bitsOf(frame, 19, 13));
    if (format == 11) {
        set("capability", static_cast<double>(status), time);
    } else if (format == 0 || format == 16) {
        setGroundStatus(status >= 4 ? 1 : 2, time);
    } else {
        takeFlightStatus(status, time);
    }
    if (format == 5 || format == 21) {
        setSquawk(identityCode(code), time);
    } else if (format != 11) {
        setAltitude(altitudeCode(code).feet, time, check);
    }
    count("DF" + std::to_string(format), time);
}

void AircraftModel::takeFlightStatus(u64 status, u64 time) {
    if (status > 5) {
        return;
    }
    const bool alert = status >= 2 && status <= 4;
    setGroundStatus(status >= 4 ? 0 : status % 2 == 1 ? 1 : 2, time);
    setAndTell("spi", "[INFO    ][ADSBTarget] SPI change", status >= 4 ? 1 : 0, time);
    setAndTell("alert", "[INFO    ][ADSBTarget] Alert status change", alert ? 1 : 0, time);
}

void AircraftModel::takePayload(const std::string& me, u64 time, const AltitudeCheck& check) {
    const std::unique_ptr<ADSBMessage> payload(
        _record->decoder.decode(static_cast<MOPSVersion>(version()), me));
    for (const std::string& line : _record->log.take()) {
        _record->say(line);
    }
    if (payload == nullptr) {
        return;
    }
    if (const auto* name = dynamic_cast<ADSBIdentityMessage*>(payload.get())) {
        setCategory(name->emitterCategory(), time);
        setCallsign(name->callsign(), time);
    } else if (const auto* place = dynamic_cast<ADSBAirbornePositionMessage*>(payload.get())) {
        takePosition(*place, time, check);
    } else if (const auto* velocity = dynamic_cast<ADSBAirborneVelocityMessage*>(payload.get())) {
        set("groundSpeed", velocity->groundSpeed(), time);
        set("heading", velocity->heading(), time);
        headingSet = true;
        if (!bitOf(me, 35)) {
            set("verticalRate", velocity->verticalRate(), time);
        }
        if (version() == 0) {
            setTracked("nucr", static_cast<double>(bitsOf(me, 10, 3)), time);
        }
    } else if (payload->type() == ADSBMessage::OP_STATUS) {
        takeStatusOfVersion(me, time);
    }
    judgeVersion0(time);
    count("DF17", time);
    ++value("type" + std::to_string(payload->type()));
}

void AircraftModel::takePosition(const ADSBAirbornePositionMessage& message, u64 time,
                                 const AltitudeCheck& check) {
    setGroundStatus(2, time);
    setAltitude(message.altitude(), time, check);
    Frame& frame = message.cprFormat() == Even ? _even : _odd;
    frame = {{message.cprLatitude(), message.cprLongitude()}, time};
    const i64 apart = distance(_even.stamp, _odd.stamp);
    if (_even.stamp == 0 || _odd.stamp == 0) {
        _record->happened("frame without the other");
    } else if (apart > 10000) {
        _record->happened(apart == 0x80000000 ? "frames 2^31 ms apart" : "frames too far apart");
    } else {
        solve();
    }
    if (version() == 2) {
        set("B", bitOf(message.data(), 7) ? 1 : 0, time);
    }
    setQuality(message.typeCode(), time);
}

/// The solution of a pair has tests of its own.
void AircraftModel::solve() {
    const bool evenIsNewer = _even.stamp > _odd.stamp;
    const auto place = cpr::solve(_even.cpr, _odd.cpr, evenIsNewer);
    if (!place) {
        _record->happened("frames of different zones");
        return;
    }
    const u64 time = std::max(_even.stamp, _odd.stamp);
    set("latitude", place->latitude, time);
    set("longitude", place->longitude, time);
    _record->happened(_even.stamp == _odd.stamp ? "frames of the same time"
                      : evenIsNewer             ? "even frame newer"
                                                : "odd frame newer");
}

void AircraftModel::takeStatusOfVersion(const std::string& me, u64 time) {
    const u64 sent = bitsOf(me, 40, 3);
    const int assumed = sent == 1 ? 1 : 2;
    if (assumed != version()) {
        _record->happened("change to version " + std::to_string(assumed));
        data["version"] = {static_cast<double>(assumed), time, time};
        for (const char* indicator : {"nucp", "nic", "pic", "nacp", "sil"}) {
            setTracked(indicator, 0, 0);
        }
    }
    setConfirmed(sent <= 2, time);
    set("A", bitOf(me, 43) ? 1 : 0, time);
}

/// Runs before the payload itself is counted.
void AircraftModel::judgeVersion0(u64 time) {
    const double signs = value("type5") + value("type6");
    const bool confirmed = value("confirmed") != 0;
    if (version() != 0) {
        return;
    }
    if (!confirmed && value("DF17") >= 20 && signs + value("type7") == 0) {
        setConfirmed(true, time);
        _record->say("[DEBUG   ][ADSBTracker] Track #" + number(value("target")) +
                     " MOPS version 0 confirmed.");
        _record->happened("version 0 confirmed");
    } else if (confirmed && signs != 0) {
        setConfirmed(false, time);
        _record->happened("version 0 assumed again");
    }
}

void AircraftModel::takeReport(const ADSBTargetReport& r, const AltitudeCheck& check) {
    data["target"] = {static_cast<double>(r.trackId()), r.lastUpdate(), 0};
    if (r.callsignValid()) {
        setCallsign(r.callsign(), r.callsignLastUpdate());
        data["callsign"].change = r.callsignLastChange();
    }
    if (r.emitterCategoryValid()) {
        setCategory(r.emitterCategory(), r.emitterCategoryLastUpdate());
        data["emitterCategory"].change = r.emitterCategoryLastChange();
    }
    const auto setIf = [this](bool valid, const char* name, double value, u64 time) {
        if (valid) {
            set(name, value, time);
        }
    };
    setIf(r.squawkValid(), "squawk", r.squawk(), r.squawkLastUpdate());
    setIf(r.positionValid(), "latitude", r.latitude(), r.positionLastUpdate());
    setIf(r.positionValid(), "longitude", r.longitude(), r.positionLastUpdate());
    setIf(r.signalAmplitudeValid(), "amplitude", r.signalAmplitude(),
          r.signalAmplitudeLastUpdate());
    if (r.altitudeBaroValid()) {
        setAltitude(r.altitudeBaro(), r.altitudeBaroLastUpdate(), check);
    }
    setIf(r.groundSpeedValid(), "groundSpeed", r.groundSpeed(), r.groundSpeedLastUpdate());
    setIf(r.headingValid(), "heading", r.heading(), r.lastUpdate());
    headingSet = headingSet || r.headingValid();
    setIf(r.verticalRateBaroValid(), "verticalRate", r.verticalRateBaro(),
          r.verticalRateBaroLastUpdate());
    if (r.groundStatusValid()) {
        setGroundStatus(r.groundStatus() ? 1 : 2, r.groundStatusLastUpdate());
    }
}

void AircraftModel::count(const std::string& counter, u64 time) {
    ++value(counter);
    set("replies", value("replies") + 1, time);
}

/// A datum that has no time of its last change, or keeps it.
void AircraftModel::set(const std::string& name, double value, u64 time) {
    data[name] = {value, time, data[name].change};
}

/// A datum with a time of its last change. Its first value counts as a change.
void AircraftModel::setTracked(const std::string& name, double value, u64 time) {
    Datum& datum = data[name];
    const bool changes = value != datum.value || datum.change == 0;
    datum = {value, time, changes ? time : datum.change};
}

/// The same with a line for every new value.
void AircraftModel::setAndTell(const std::string& name, const char* line, double value, u64 time) {
    const Datum& old = data[name];
    if (value != old.value) {
        _record->say(line + (" old = " + number(old.value)) + " new = " + number(value));
        _record->happened(old.change == 0 ? "line for a first value" : "line for a new value");
    }
    setTracked(name, value, time);
}

void AircraftModel::setCategory(u32 category, u64 time) {
    setAndTell("emitterCategory", "[DEBUG   ][ADSBTarget] Emitter category change", category, time);
}

void AircraftModel::setSquawk(u32 squawk, u64 time) {
    const Datum& datum = data["squawk"];
    const auto old = static_cast<u32>(datum.value);
    if (old != 0 && (squawk != old || datum.change == 0)) {
        _record->say("[INFO    ][ADSBTarget] Squawk Change old = " + text::octal(old) +
                     " new = " + text::octal(squawk));
        _record->happened(squawk == old ? "line for the same squawk"
                          : old > 4095  ? "line for a squawk above 7777"
                                        : "line for a new value");
    }
    setTracked("squawk", squawk, time);
}

void AircraftModel::setCallsign(const std::string& newCallsign, u64 time) {
    Datum& datum = data["callsign"];
    datum.update = time;
    if (newCallsign == callsign && datum.change != 0) {
        return;
    }
    if (!callsign.empty()) {
        // A line ends at the first NUL of a callsign, and at 1023 characters.
        const std::string line = std::string("Callsign Change old = ") + callsign.c_str() +
                                 " new = " + newCallsign.c_str();
        _record->say("[INFO    ][ADSBTarget] " + line.substr(0, 1023));
        _record->happened(newCallsign == callsign ? "line for the same callsign"
                                                  : "line for a new value");
    }
    datum.change = time;
    callsign = newCallsign;
}

void AircraftModel::setGroundStatus(int status, u64 time) {
    Datum& datum = data["groundStatus"];
    datum = {static_cast<double>(status), time, datum.value == status ? datum.change : time};
}

void AircraftModel::setAltitude(i32 altitude, u64 time, const AltitudeCheck& check) {
    const Datum old = data["altitude"];
    const u64 span = (u64{check.seconds} * 1000) & 0xFFFFFFFF;
    const i64 step = distance(static_cast<u64>(static_cast<i64>(old.value)),
                              static_cast<u64>(static_cast<i64>(altitude)));
    const bool refused =
        check.enabled && old.update > 0 && time - old.update < span && step > check.limit;
    _record->happened(refused ? "altitude refused" : "altitude accepted");
    if (!refused) {
        set("altitude", altitude, time);
    }
}

void AircraftModel::setConfirmed(bool confirmed, u64 time) {
    Datum& datum = data["version"];
    const bool turns = confirmed != (value("confirmed") != 0);
    datum = {datum.value, time, turns ? time : datum.change};
    value("confirmed") = confirmed ? 1 : 0;
}

/// The quality tables have tests of their own.
void AircraftModel::setQuality(u8 typeCode, u64 time) {
    const auto state = [this](const char* name) {
        return data[name].update == 0 ? Supplement::Unknown
               : value(name) != 0     ? Supplement::Set
                                      : Supplement::Clear;
    };
    const Supplements supplements{state("A"), state("B"), state("C")};
    const PositionQualityV0 ofVersion0 = positionQualityV0(typeCode);
    const PositionQuality quality = version() == 0   ? PositionQuality(ofVersion0)
                                    : version() == 1 ? positionQualityV1(typeCode, supplements)
                                                     : positionQualityV2(typeCode, supplements);
    setTracked("nucp", quality.nucp, time);
    setTracked("nic", quality.nic, time);
    setTracked("pic", quality.pic, time);
    if (version() == 0) {
        setTracked("nacp", ofVersion0.nacp, time);
        setTracked("sil", ofVersion0.sil, time);
    }
}

} // namespace tolvarin::ondrel::test
