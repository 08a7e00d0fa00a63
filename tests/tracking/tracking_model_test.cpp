// The tracker beside a second one, slow and plain: what both know and say must be the same, to the
// last bit, after every step of a long and wild life.
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_tracker.h>

#include "quality_indicators.h"
#include "report_snapshot.h"
#include "simulator/random.h"
#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/messages.h"
#include "surveillance_codes.h"
#include "text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <sstream>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using simulator::Random;
using test::CapturedLog;
using test::Lines;
using i64 = std::int64_t;

struct Datum {
    double value = 0;
    u64 update = 0;
    u64 change = 0;
};

struct Frame {
    i64 latitude = 0;
    i64 longitude = 0;
    u64 stamp = 0;
};

/// One aircraft of the model: data by name, and what is no number.
struct Aircraft {
    std::map<std::string, Datum> data;
    std::string callsign;
    bool headingSet = false;
    Frame even;
    Frame odd;

    double& value(const std::string& name) { return data[name].value; }
    int version() { return static_cast<int>(value("version")); }

    bool valid(char rule, const Datum& datum) {
        const bool byVersion =
            rule == 'U' || (rule == '0' ? version() == 0 : version() >= rule - '0');
        return rule == 'C'   ? datum.change > 0
               : rule == 'F' ? headingSet
                             : rule != '-' && byVersion && datum.update > 0;
    }
};

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// What the library's target tells, by every getter, against the model. Each datum stands with the
/// rule of its validity: U last update, C last change, F flag, 0 1 2 by version, - none.
std::string differences(ADSBTarget t, Aircraft& craft) {
    std::ostringstream out;
    const auto is = [&](char rule, const std::string& name, double value, u64 update = 0,
                        u64 change = 0, bool valid = false) {
        const Datum& datum = craft.data[name];
        if (!sameBits(value, datum.value) || update != datum.update || change != datum.change ||
            valid != craft.valid(rule, datum)) {
            out << name << ' ' << value << ' ' << update << ' ' << change << ' ' << valid
                << ", but the model has " << datum.value << ' ' << datum.update << ' '
                << datum.change << '\n';
        }
    };
    is('-', "address", t.icaoAddr());
    is('-', "target", t.trackId(), t.lastUpdate());
    is('-', "callsign", 0, t.callsignLastUpdate(), t.callsignLastChange());
    is('C', "emitterCategory", t.emitterCategory(), t.emitterCategoryLastUpdate(),
       t.emitterCategoryLastChange(), t.emitterCategoryValid());
    is('U', "squawk", t.squawk(), t.squawkLastUpdate(), t.squawkLastChange(), t.squawkValid());
    is('U', "latitude", t.latitude(), t.positionLastUpdate(), 0, t.positionValid());
    is('U', "longitude", t.longitude(), t.positionLastUpdate(), 0, t.positionValid());
    is('U', "amplitude", t.signalAmplitude(), t.signalAmplitudeLastUpdate(), 0,
       t.signalAmplitudeValid());
    is('U', "altitude", t.altitudeBaro(), t.altitudeBaroLastUpdate(), 0, t.altitudeBaroValid());
    is('U', "groundSpeed", t.groundSpeed(), t.groundSpeedLastUpdate(), 0, t.groundSpeedValid());
    is('F', "heading", t.heading(), t.headingLastUpdate(), 0, t.headingValid());
    is('U', "verticalRate", t.verticalRateBaro(), t.verticalRateBaroLastUpdate(), 0,
       t.verticalRateBaroValid());
    is('U', "capability", t.transponderCommCapability(), t.transponderCommCapabilityLastUpdate(), 0,
       t.transponderCommCapabilityValid());
    is('U', "groundStatus", t.groundStatus(), t.groundStatusLastUpdate(),
       t.groundStatusLastChange(), t.groundStatusValid());
    is('U', "spi", t.spiStatus(), t.spiStatusLastUpdate(), t.spiStatusLastChange(),
       t.spiStatusValid());
    is('U', "alert", t.alertStatus(), t.alertStatusLastUpdate(), t.alertStatusLastChange(),
       t.alertStatusValid());
    is('-', "version", t.mopsVersion(), t.mopsVersionLastUpdate(), t.mopsVersionLastChange());
    is('-', "confirmed", t.mopsVersionConfirmed(), 0, 0,
       t.mopsVersionConfirmed() == t.mopsVersionAssumed());
    is('U', "nucp", t.nucp(), t.nucpLastUpdate(), t.nucpLastChange(), t.nucpValid());
    is('0', "nucr", t.nucr(), t.nucrLastUpdate(), t.nucrLastChange(), t.nucrValid());
    is('U', "nic", t.nic(), t.nicLastUpdate(), t.nicLastChange(), t.nicValid());
    is('1', "A", t.nicSupplementA(), t.nicSuppALastUpdate(), 0, t.nicSupplementAValid());
    is('2', "B", t.nicSupplementB(), t.nicSuppBLastUpdate(), 0, t.nicSupplementBValid());
    is('2', "C", t.nicSupplementC(), t.nicSuppCLastUpdate(), 0, t.nicSupplementCValid());
    is('U', "pic", t.pic(), t.picLastUpdate(), t.picLastChange(), t.picValid());
    is('C', "nacp", t.nacp(), t.nacpLastUpdate(), t.nacpLastChange(), t.nacpValid());
    is('C', "sil", t.sil(), t.silLastUpdate(), t.silLastChange(), t.silValid());
    for (int i = DFMessage::DF0; i <= DFMessage::DF24; ++i) {
        is('-', "DF" + std::to_string(i),
           t.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(i)));
    }
    for (int i = ADSBMessage::ACID; i <= ADSBMessage::RESERVED; ++i) {
        is('-', "type" + std::to_string(i),
           t.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(i)));
    }
    is('U', "replies", t.statisticDfMsgCount(), t.statisticLastUpdate(), 0, t.statisticValid());
    if (t.callsign() != craft.callsign) {
        out << "callsign " << t.callsign() << ", but the model has " << craft.callsign << '\n';
    }
    return out.str();
}

/// Bits counted from 1.
u32 bits(const std::string& bytes, unsigned first, unsigned last) {
    u32 value = 0;
    for (unsigned i = first; i <= last; ++i) {
        value = 2 * value + (test::bitOf(bytes, i - 1) ? 1 : 0);
    }
    return value;
}

i64 modulo(i64 a, i64 b) {
    return ((a % b) + b) % b;
}

/// a / 2^17 to the nearest whole number, halves up.
i64 rounded(i64 a) {
    return (a + 65536 - modulo(a + 65536, 131072)) / 131072;
}

/// The magnitude of a difference between signed 32-bit numbers.
i64 distance(u64 a, u64 b) {
    const auto difference = static_cast<i64>((a - b) & 0xFFFFFFFF);
    return difference <= 0x80000000 ? difference : 0x100000000 - difference;
}

/// By the formula, with its edges rounded as the published table rounds them.
int zonesAt(double latitude) {
    static const std::vector<double> edges = [] {
        std::vector<double> all;
        const double pi = std::acos(-1.0);
        for (int n = 2; n <= 59; ++n) {
            const double part = (1 - std::cos(pi / 30)) / (1 - std::cos(2 * pi / n));
            all.push_back(std::round(std::acos(std::sqrt(part)) * 180 / pi * 1e8) / 1e8);
        }
        return all;
    }();
    return 1 + static_cast<int>(std::count_if(edges.begin(), edges.end(), [latitude](double edge) {
               return std::fabs(latitude) < edge;
           }));
}

/// What a model says and what befell it.
struct Chronicle {
    CapturedLog log;
    ADSBDecoder decoder;
    Lines lines;
    std::map<std::string, unsigned> events;
};

/// The tracker once more. Copies share their aircraft, as copies of the tracker do.
class Model {
public:
    explicit Model(Chronicle& chronicle) : _chronicle(&chronicle) {}

    using Craft = std::shared_ptr<Aircraft>;

    std::map<u32, Craft> aircraft;
    bool checking = false;
    u32 checkingSeconds = 4;
    u32 checkingLimit = 150;

    /// The aircraft that takes a reply in, or null.
    Craft take(const DFMessage& message) {
        const std::string& frame = message.data();
        const u32 format = bits(frame, 1, 5);
        if (format == 18 || format == 19) {
            say("[WARNING ][ADSBTracker] Unsupported DF-" + std::to_string(format) +
                " message detected.");
            return nullptr;
        }
        if (message.confidence() < (format == 17 ? ModeSMessage::High : ModeSMessage::Medium)) {
            return nullptr;
        }
        const u32 address = message.icaoAddress();
        if (format == 11 && aircraft.count(address) == 0) {
            happened("nobody");
            return nullptr;
        }
        const Craft craft = enter(address);
        Aircraft& c = *craft;
        const u64 time = message.timeStamp();
        c.data["target"].update = time;
        if (format == 17) {
            plain(c, "amplitude", message.signalAmplitude(), time);
            takePayload(c, frame.substr(4, 7), time);
            return craft;
        }
        if (format == 11) {
            plain(c, "capability", bits(frame, 6, 8), time);
        } else if (format == 0 || format == 16) {
            setGroundStatus(c, bits(frame, 6, 6) == 1 ? 1 : 2, time);
        } else {
            takeFlightStatus(c, bits(frame, 6, 8), time);
        }
        if (format == 5 || format == 21) {
            setSquawk(c, identityCode(bits(frame, 20, 32)), time);
        } else if (format != 11) {
            setAltitude(c, altitudeCode(bits(frame, 20, 32)).feet, time);
        }
        count(c, "DF" + std::to_string(format), time);
        return craft;
    }

    Craft take(const ADSBTargetReport& r) {
        if (r.lastUpdate() == 0 || !r.icaoAddressValid()) {
            happened("no report");
            return nullptr;
        }
        const Craft craft = enter(r.icaoAddress());
        Aircraft& c = *craft;
        c.data["target"] = {static_cast<double>(r.trackId()), r.lastUpdate(), 0};
        if (r.callsignValid()) {
            setCallsign(c, r.callsign(), r.callsignLastUpdate());
            c.data["callsign"].change = r.callsignLastChange();
        }
        if (r.emitterCategoryValid()) {
            setCategory(c, r.emitterCategory(), r.emitterCategoryLastUpdate());
            c.data["emitterCategory"].change = r.emitterCategoryLastChange();
        }
        const auto put = [&](bool valid, const char* name, double value, u64 time) {
            if (valid) {
                plain(c, name, value, time);
            }
        };
        put(r.squawkValid(), "squawk", r.squawk(), r.squawkLastUpdate());
        put(r.positionValid(), "latitude", r.latitude(), r.positionLastUpdate());
        put(r.positionValid(), "longitude", r.longitude(), r.positionLastUpdate());
        put(r.signalAmplitudeValid(), "amplitude", r.signalAmplitude(),
            r.signalAmplitudeLastUpdate());
        if (r.altitudeBaroValid()) {
            setAltitude(c, r.altitudeBaro(), r.altitudeBaroLastUpdate());
        }
        put(r.groundSpeedValid(), "groundSpeed", r.groundSpeed(), r.groundSpeedLastUpdate());
        put(r.headingValid(), "heading", r.heading(), r.lastUpdate());
        c.headingSet = c.headingSet || r.headingValid();
        put(r.verticalRateBaroValid(), "verticalRate", r.verticalRateBaro(),
            r.verticalRateBaroLastUpdate());
        if (r.groundStatusValid()) {
            setGroundStatus(c, r.groundStatus() ? 1 : 2, r.groundStatusLastUpdate());
        }
        return craft;
    }

    template <class Wanted>
    std::vector<Craft> those(Wanted wanted) const {
        std::vector<Craft> found;
        for (const auto& entry : aircraft) {
            if (wanted(entry.second->data["target"].update)) {
                found.push_back(entry.second);
            }
        }
        return found;
    }

    std::vector<Craft> kill(u64 time) {
        const auto killed = those([time](u64 update) { return update <= time; });
        for (const Craft& craft : killed) {
            say("[DEBUG   ][ADSBTracker] Target #" + number(craft->value("target")) + " killed.");
            aircraft.erase(static_cast<u32>(craft->value("address")));
        }
        return killed;
    }

    void reset() {
        aircraft.clear();
        _next = 1;
    }

private:
    Chronicle* _chronicle;
    u32 _next = 1;

    static std::string number(double value) { return std::to_string(static_cast<i64>(value)); }
    static std::string code(double value) { return text::octal(static_cast<u32>(value)); }

    void say(const std::string& line) { _chronicle->lines.push_back(line); }
    void happened(const std::string& what) { ++_chronicle->events[what]; }

    Craft enter(u32 address) {
        if (aircraft.count(address) != 0) {
            return aircraft[address];
        }
        for (bool taken = true; taken; _next += taken ? 1 : 0) {
            _next = _next > 4095 ? 1 : _next;
            taken = std::any_of(aircraft.begin(), aircraft.end(), [this](const auto& entry) {
                return entry.second->value("target") == _next;
            });
            happened(taken ? "used id" : "free id");
        }
        Craft& craft = aircraft[address] = std::make_shared<Aircraft>();
        craft->value("address") = address;
        craft->value("target") = _next++;
        return craft;
    }

    static void plain(Aircraft& c, const std::string& name, double value, u64 time) {
        c.data[name] = {value, time, c.data[name].change};
    }
    static bool changes(const Datum& datum, double value) {
        return value != datum.value || datum.change == 0;
    }
    static void tracked(Aircraft& c, const std::string& name, double value, u64 time) {
        Datum& datum = c.data[name];
        datum = {value, time, changes(datum, value) ? time : datum.change};
    }

    /// The tracked rule with a line on every difference.
    void told(Aircraft& c, const std::string& name, const char* line, double value, u64 time) {
        if (value != c.value(name)) {
            say(line + number(c.value(name)) + " new = " + number(value));
            happened(c.data[name].change == 0 ? "first told" : "told");
        }
        tracked(c, name, value, time);
    }
    void setCategory(Aircraft& c, u32 category, u64 time) {
        told(c, "emitterCategory",
             "[DEBUG   ][ADSBTarget] Emitter category change old = ", category, time);
    }
    void takeFlightStatus(Aircraft& c, u32 status, u64 time) {
        if (status > 5) {
            return;
        }
        setGroundStatus(c, status >= 4 ? 0 : status % 2 == 1 ? 1 : 2, time);
        told(c, "spi", "[INFO    ][ADSBTarget] SPI change old = ", status >= 4 ? 1 : 0, time);
        told(c, "alert", "[INFO    ][ADSBTarget] Alert status change old = ",
             status >= 2 && status <= 4 ? 1 : 0, time);
    }
    void setSquawk(Aircraft& c, u32 squawk, u64 time) {
        const double old = c.value("squawk");
        if (old != 0 && changes(c.data["squawk"], squawk)) {
            say("[INFO    ][ADSBTarget] Squawk Change old = " + code(old) +
                " new = " + code(squawk));
            happened(old == squawk ? "same code" : old > 4095 ? "long code" : "told");
        }
        tracked(c, "squawk", squawk, time);
    }
    void setCallsign(Aircraft& c, const std::string& callsign, u64 time) {
        Datum& datum = c.data["callsign"];
        datum.update = time;
        if (callsign != c.callsign || datum.change == 0) {
            if (!c.callsign.empty()) {
                const std::string line = std::string("Callsign Change old = ") +
                                         c.callsign.c_str() + " new = " + callsign.c_str();
                say("[INFO    ][ADSBTarget] " + line.substr(0, 1023));
                happened(callsign == c.callsign ? "same name" : "told");
            }
            datum.change = time;
            c.callsign = callsign;
        }
    }
    static void setGroundStatus(Aircraft& c, int status, u64 time) {
        Datum& datum = c.data["groundStatus"];
        datum = {static_cast<double>(status), time, datum.value == status ? datum.change : time};
    }
    void setAltitude(Aircraft& c, i32 altitude, u64 time) {
        const Datum old = c.data["altitude"];
        const u64 span = (u64{checkingSeconds} * 1000) & 0xFFFFFFFF;
        const i64 step = distance(static_cast<u64>(static_cast<i64>(old.value)),
                                  static_cast<u64>(static_cast<i64>(altitude)));
        const bool refused =
            checking && old.update > 0 && time - old.update < span && step > checkingLimit;
        happened(refused ? "refused" : "accepted");
        plain(c, "altitude", refused ? old.value : altitude, refused ? old.update : time);
    }

    void takePayload(Aircraft& c, const std::string& me, u64 time) {
        const std::unique_ptr<ADSBMessage> payload(
            _chronicle->decoder.decode(static_cast<MOPSVersion>(c.version()), me));
        for (const std::string& line : _chronicle->log.take()) {
            say(line);
        }
        if (payload == nullptr) {
            return;
        }
        if (const auto* name = dynamic_cast<ADSBIdentityMessage*>(payload.get())) {
            setCategory(c, name->emitterCategory(), time);
            setCallsign(c, name->callsign(), time);
        } else if (const auto* position =
                       dynamic_cast<ADSBAirbornePositionMessage*>(payload.get())) {
            takePosition(c, *position, time);
        } else if (const auto* velocity =
                       dynamic_cast<ADSBAirborneVelocityMessage*>(payload.get())) {
            plain(c, "groundSpeed", velocity->groundSpeed(), time);
            plain(c, "heading", velocity->heading(), time);
            c.headingSet = true;
            if (bits(me, 36, 36) == 0) {
                plain(c, "verticalRate", velocity->verticalRate(), time);
            }
            if (c.version() == 0) {
                tracked(c, "nucr", bits(me, 11, 13), time);
            }
        } else if (bits(me, 1, 5) == 31) {
            setVersion(c, bits(me, 41, 43) == 1 ? 1 : 2, time);
            setConfirmed(c, bits(me, 41, 43) <= 2, time);
            plain(c, "A", bits(me, 44, 44), time);
        }
        judgeVersion0(c, time);
        count(c, "DF17", time);
        ++c.value("type" + std::to_string(payload->type()));
    }

    void takePosition(Aircraft& c, const ADSBAirbornePositionMessage& message, u64 time) {
        setGroundStatus(c, 2, time);
        setAltitude(c, message.altitude(), time);
        (message.cprFormat() == Even ? c.even : c.odd) = {message.cprLatitude(),
                                                          message.cprLongitude(), time};
        const i64 apart = distance(c.even.stamp, c.odd.stamp);
        if (c.even.stamp == 0 || c.odd.stamp == 0) {
            happened("alone");
        } else if (apart > 10000) {
            happened(apart == 0x80000000 ? "2^31 apart" : "apart");
        } else {
            solve(c);
        }
        if (c.version() == 2) {
            plain(c, "B", bits(message.data(), 8, 8), time);
        }
        grade(c, message.typeCode(), time);
    }

    /// The tables have a test of their own.
    static void grade(Aircraft& c, u8 code, u64 time) {
        const auto state = [&c](const char* name) {
            return c.data[name].update == 0 ? Supplement::Unknown
                   : c.value(name) != 0     ? Supplement::Set
                                            : Supplement::Clear;
        };
        const Supplements supplements{state("A"), state("B"), state("C")};
        const PositionQualityV0 early = positionQualityV0(code);
        PositionQuality quality = early;
        if (c.version() > 0) {
            quality = c.version() == 1 ? positionQualityV1(code, supplements)
                                       : positionQualityV2(code, supplements);
        }
        tracked(c, "nucp", quality.nucp, time);
        tracked(c, "nic", quality.nic, time);
        tracked(c, "pic", quality.pic, time);
        if (c.version() == 0) {
            tracked(c, "nacp", early.nacp, time);
            tracked(c, "sil", early.sil, time);
        }
    }

    void solve(Aircraft& c) {
        const auto share = [](i64 value) { return static_cast<double>(value) / 131072; };
        const auto fold = [](double value, double edge) {
            return value < edge ? value : value - 360;
        };
        const i64 row = rounded(59 * c.even.latitude - 60 * c.odd.latitude);
        const double evenNorth =
            (static_cast<double>(modulo(row, 60)) + share(c.even.latitude)) * 6;
        const double oddNorth =
            (static_cast<double>(modulo(row, 59)) + share(c.odd.latitude)) * 6.101694915254237;
        const bool evenIsNewer = c.even.stamp > c.odd.stamp;
        const double north = fold(evenIsNewer ? evenNorth : oddNorth, 270);
        const int zones = zonesAt(north);
        if (zones != zonesAt(fold(evenIsNewer ? oddNorth : evenNorth, 270))) {
            happened("zones");
            return;
        }
        const i64 column = rounded((zones - 1) * c.even.longitude - zones * c.odd.longitude);
        const int width = std::max(evenIsNewer ? zones : zones - 1, 1);
        const double east = (static_cast<double>(modulo(column, width)) +
                             share(evenIsNewer ? c.even.longitude : c.odd.longitude)) *
                            (360.0 / width);
        const u64 time = std::max(c.even.stamp, c.odd.stamp);
        plain(c, "latitude", north, time);
        plain(c, "longitude", fold(east, std::nextafter(180, 181)), time);
        happened(c.even.stamp == c.odd.stamp ? "tie" : evenIsNewer ? "even" : "odd");
        happened(std::fabs(north) > 90 ? "beyond 90" : zones == 1 ? "pole" : "solved");
    }

    void setVersion(Aircraft& c, int version, u64 time) {
        Datum& datum = c.data["version"];
        datum.update = time;
        if (version != datum.value) {
            happened("version " + std::to_string(version));
            datum = {static_cast<double>(version), time, time};
            for (const char* indicator : {"nucp", "nic", "pic", "nacp", "sil"}) {
                tracked(c, indicator, 0, 0);
            }
        }
    }
    void setConfirmed(Aircraft& c, bool confirmed, u64 time) {
        Datum& datum = c.data["version"];
        const bool turns = confirmed != (c.value("confirmed") != 0);
        datum = {datum.value, time, turns ? time : datum.change};
        c.value("confirmed") = confirmed ? 1 : 0;
    }
    void judgeVersion0(Aircraft& c, u64 time) {
        const double signs = c.value("type5") + c.value("type6");
        if (c.version() != 0) {
            return;
        }
        if (c.value("confirmed") == 0 && c.value("DF17") >= 20 && signs + c.value("type7") == 0) {
            setConfirmed(c, true, time);
            say("[DEBUG   ][ADSBTracker] Track #" + number(c.value("target")) +
                " MOPS version 0 confirmed.");
            happened("confirmed");
        } else if (c.value("confirmed") != 0 && signs != 0) {
            setConfirmed(c, false, time);
            happened("doubted");
        }
    }
    static void count(Aircraft& c, const std::string& counter, u64 time) {
        ++c.value(counter);
        plain(c, "replies", c.value("replies") + 1, time);
    }
};

using Act = void (*)(ADSBTargetReport&, u32 any, u64 time);

/// What befalls a report on its way.
constexpr Act tamperings[] = {
    [](ADSBTargetReport& r, u32 any, u64) {
        r.setTrackId(any % 2 == 0 ? any % 5 : 4092 + any % 5);
    },
    [](ADSBTargetReport& r, u32 any, u64 time) { r.setLastUpdate(any % 3 == 0 ? 0 : time); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setCallsign(std::string(any % 1500, 'X')); },
    [](ADSBTargetReport& r, u32, u64) { r.setCallsign(std::string("AB\0C", 4)); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setCallsignLastChange(any % 2); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setEmitterCategory(static_cast<u8>(any)); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setSquawk(any % 2 == 0 ? 02220 : any); },
    [](ADSBTargetReport& r, u32, u64 time) { r.setSquawkLastUpdate(time); },
    [](ADSBTargetReport& r, u32, u64) { r.setSquawkValid(true); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setPosition(any, std::nan("")); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setPositionValid(any % 2 == 0); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setAltitudeBaro(static_cast<i32>(any)); },
    [](ADSBTargetReport& r, u32, u64) { r.setAltitudeBaro(std::numeric_limits<i32>::min()); },
    [](ADSBTargetReport& r, u32, u64 time) { r.setAltitudeBaroLastUpdate(time); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setIcaoAddress(any % 8); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setIcaoAddressValid(any % 2 == 0); },
};

/// Three trackers and their models, which live the same life. The addresses are 0 to 7.
class TwoWorlds {
public:
    explicit TwoWorlds(u64 seed) : _random(seed) { _chronicle.log.take(); }

    void live(int steps) {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            _place = _random.chance(0.7) ? _place : any() % _worlds.size();
            World& world = _worlds.at(_place);
            if (_random.chance(0.95)) {
                takeMessage(world);
            } else {
                intervene(world, _worlds.at(any() % _worlds.size()));
            }
            if (i % 16 == 0) {
                for (World& each : _worlds) {
                    compare(each.tracker.allTargets(), each.model.those([](u64) { return true; }));
                }
            }
        }
    }

    const std::map<std::string, unsigned>& events() const { return _chronicle.events; }

private:
    struct World {
        ADSBTracker tracker;
        Model model;
    };

    Chronicle _chronicle;
    Random _random;
    std::array<World, 3> _worlds{
        {{{}, Model(_chronicle)}, {{}, Model(_chronicle)}, {{}, Model(_chronicle)}}};
    u64 _now = 1;
    u64 _stamp = 1;
    u32 _address = 0;
    std::size_t _place = 0;

    u32 any() { return static_cast<u32>(_random.bits()); }

    /// Mostly a little later than the last one; sometimes another era, or far or near beside it.
    u64 stamp() {
        static constexpr std::array<u64, 7> eras = {
            0, 1, 0x7FFFE000, 0xFFFFE000, 0x17FFFE000, 1700000000000, ~u64{0} - 5000};
        static constexpr std::array<u64, 6> shifts = {0x80000000,  0x7FFFFFFF, 0x80000001,
                                                      0x100000000, 10000,      10001};
        if (_random.chance(0.06)) {
            return _random.chance(0.1) ? 0 : _stamp - _random.oneOf(shifts);
        }
        if (_random.chance(0.02)) {
            return _now += _random.oneOf(shifts);
        }
        return _now = _random.chance(0.003) ? _random.oneOf(eras) : _now + any() % 150;
    }

    /// Random bits with a type code of some use. Even addresses hardly ever send a sign of a
    /// version above 0.
    std::string payload() {
        static constexpr std::array<unsigned, 8> early = {1, 4, 5, 19, 19, 23, 24, 11};
        static constexpr std::array<unsigned, 8> late = {31, 28, 29, 28, 4, 28, 28, 0};
        const bool isEarly = _address % 2 == 0 && _random.chance(0.96);
        const u32 code =
            _random.chance(0.6) ? 9 + any() % 14 : _random.oneOf(isEarly ? early : late);
        std::string me = test::word(any());
        me += test::word(any()).substr(1);
        me[0] = static_cast<char>(code << 3 | (code < 19 ? any() % 8 : any() % 4));
        if (_random.chance(0.6) && code != 31) {
            me.replace(1, 2, "\xC3\x80"); // the altitude, or half a callsign, that all know
        }
        return me;
    }

    std::string frame() {
        static constexpr std::array<unsigned, 16> formats = {0,  4,  5,  11, 16, 17, 17, 17,
                                                             17, 17, 17, 17, 18, 19, 20, 21};
        static constexpr std::array<u32, 4> codes = {0, 0x0808, 0x1718, 0x1FBF}; // AC or ID
        const unsigned format = _random.oneOf(formats);
        if (format == 11 || (format >= 17 && format <= 19)) {
            const std::string me = format == 11 ? "" : payload();
            return test::withOverlay(test::head(format, any() % 8, _address) + me, 0);
        }
        const u32 code = _random.chance(0.5) ? _random.oneOf(codes) : any() & 0x1FFF;
        const std::string tail = test::isLong(format) ? "longer!" : "";
        return test::withOverlay(test::head(format, any() % 8, code) + tail, _address);
    }

    /// The library speaks first, then the model.
    template <class Act, class Follow>
    void both(Act act, Follow follow) {
        _chronicle.log.take();
        const auto result = act();
        const Lines said = _chronicle.log.take();
        compare(result, follow());
        EXPECT_EQ(said, std::exchange(_chronicle.lines, {}));
    }

    static void compare(const ADSBTarget* target, const Model::Craft& craft) {
        ASSERT_EQ(target == nullptr, craft == nullptr);
        if (target != nullptr) {
            EXPECT_EQ(differences(*target, *craft), "");
            test::expectSnapshot(target->report(), *target);
        }
    }
    static void compare(const std::vector<ADSBTarget>& targets,
                        const std::vector<Model::Craft>& crafts) {
        ASSERT_EQ(targets.size(), crafts.size());
        for (std::size_t i = 0; i < targets.size(); ++i) {
            compare(&targets[i], crafts[i]);
        }
    }

    /// Often several in a row of one aircraft, and some of them at the same time.
    void takeMessage(World& world) {
        _address = _random.chance(0.7) ? _address : any() % 8;
        const std::string frame = this->frame();
        const auto message = test::makeMessage(bits(frame, 1, 5));
        message->decode(frame);
        _stamp = _random.chance(0.2) ? _stamp : stamp();
        message->setTimeStamp(_stamp);
        message->setSignalAmplitude(static_cast<u8>(any()));
        const auto confidence = static_cast<ModeSMessage::Confidence>(any() % 4);
        message->setConfidence(_random.chance(0.8) ? ModeSMessage::High : confidence);
        both([&] { return world.tracker.procModeSMsg(message.get()); },
             [&] { return world.model.take(*message); });
    }

    void intervene(World& world, World& other) {
        const u64 time = stamp();
        const auto targets = other.tracker.allTargets();
        const ADSBTarget chosen = targets.empty() ? ADSBTarget(3) : targets[time % targets.size()];
        const int what = _random.between(0, 29);
        if (what <= 24) {
            ADSBTargetReport report = chosen.report();
            for (int i = _random.between(0, 6); i > 0; --i) {
                tamperings[any() % std::size(tamperings)](report, any(), time);
            }
            both([&] { return world.tracker.procTargetReport(&report); },
                 [&] { return world.model.take(report); });
        } else if (what == 25) {
            const u64 until = chosen.lastUpdate();
            both([&] { return world.tracker.killTargets(until); },
                 [&] { return world.model.kill(until); });
        } else if (what == 26) {
            const u64 from = chosen.lastUpdate();
            both([&] { return world.tracker.allTargetsSince(from, time); },
                 [&] { return world.model.those([=](u64 t) { return t > from && t <= time; }); });
        } else if (what <= 28) {
            Model& model = world.model;
            model.checking = time % 4 != 0;
            model.checkingSeconds = time % 16 == 1 ? 0xFFFFFFFF : any() % 8;
            model.checkingLimit = time % 16 == 2 ? 0x80000000 : any() % 3000;
            world.tracker.setAltituteBaroChecking(model.checking, model.checkingSeconds,
                                                  model.checkingLimit);
        } else {
            replace(world, other, any() % 5);
        }
    }

    void replace(World& world, World& other, u32 how) {
        if (how == 0) {
            world.tracker.reset();
            world.model.reset();
        } else if (how <= 2) {
            world = other; // perhaps itself
        } else if (&world != &other) {
            if (how == 3) {
                world.tracker = std::move(other.tracker);
            } else {
                ADSBTracker moved(std::move(other.tracker));
                world.tracker = moved;
            }
            world.model = other.model;
            other.model.aircraft.clear();
        }
        EXPECT_EQ(_chronicle.log.take(), Lines{});
    }
};

TEST(TrackingModel, KnowsAndSaysTheSameAsThePlainTracker) {
    std::map<std::string, unsigned> events;
    for (const u64 seed : {1U, 2U, 3U}) {
        TwoWorlds worlds(seed);
        worlds.live(25000);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
        for (const auto& [event, count] : worlds.events()) {
            events[event] += count;
        }
    }
    for (const char* event :
         {"nobody",     "refused",   "accepted",   "beyond 90", "even",    "odd",     "tie",
          "alone",      "apart",     "2^31 apart", "zones",     "solved",  "pole",    "told",
          "first told", "same name", "same code",  "long code", "free id", "used id", "no report",
          "confirmed",  "doubted",   "version 1",  "version 2"}) {
        EXPECT_GT(events[event], 3U) << event;
    }
}

} // namespace
} // namespace tolvarin::ondrel
