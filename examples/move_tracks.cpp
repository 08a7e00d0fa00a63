// Tracks move from one tracker to another through reports, as two processes would do it: the sender
// writes what is valid, the receiver fills a new report through the setters, value first, then the
// times; to set a value sets its flag as well. Read track_aircraft.cpp first.

#include <ondrel/adsb_tracker.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

using namespace tolvarin::ondrel;

namespace {

/// What goes over the wire is up to the application. Here it is a line of text: number, address and
/// time of the track, then a word for each datum, its value and its times.
std::string send(const ADSBTargetReport& r) {
    std::ostringstream line;
    line << std::setprecision(17);
    line << r.trackId() << ' ' << r.icaoAddress() << ' ' << r.lastUpdate();
    if (r.callsignValid()) {
        line << " callsign " << std::quoted(r.callsign()) << ' ' << r.callsignLastUpdate() << ' '
             << r.callsignLastChange();
    }
    if (r.emitterCategoryValid()) {
        line << " category " << unsigned{r.emitterCategory()} << ' '
             << r.emitterCategoryLastUpdate() << ' ' << r.emitterCategoryLastChange();
    }
    const auto put = [&line](bool valid, const char* word, auto value, u64 lastUpdate) {
        if (valid) {
            line << ' ' << word << ' ' << value << ' ' << lastUpdate;
        }
    };
    put(r.squawkValid(), "squawk", r.squawk(), r.squawkLastUpdate());
    put(r.positionValid(), "latitude", r.latitude(), r.positionLastUpdate());
    put(r.positionValid(), "longitude", r.longitude(), r.positionLastUpdate());
    put(r.altitudeBaroValid(), "altitude", r.altitudeBaro(), r.altitudeBaroLastUpdate());
    put(r.groundSpeedValid(), "speed", r.groundSpeed(), r.groundSpeedLastUpdate());
    put(r.headingValid(), "heading", r.heading(), r.headingLastUpdate());
    put(r.verticalRateBaroValid(), "climb", r.verticalRateBaro(), r.verticalRateBaroLastUpdate());
    put(r.groundStatusValid(), "ground", r.groundStatus(), r.groundStatusLastUpdate());
    return line.str();
}

template <class Value>
Value next(std::istream& line) {
    Value value{};
    line >> value;
    return value;
}

ADSBTargetReport receive(const std::string& text) {
    std::istringstream line(text);
    ADSBTargetReport r;
    r.setTrackId(next<u32>(line));
    r.setIcaoAddress(next<u32>(line));
    r.setLastUpdate(next<u64>(line));
    for (std::string word; line >> word;) {
        if (word == "callsign") {
            std::string callsign;
            line >> std::quoted(callsign);
            r.setCallsign(callsign);
            r.setCallsignLastUpdate(next<u64>(line));
            r.setCallsignLastChange(next<u64>(line));
        } else if (word == "category") {
            r.setEmitterCategory(static_cast<u8>(next<unsigned>(line)));
            r.setEmitterCategoryLastUpdate(next<u64>(line));
            r.setEmitterCategoryLastChange(next<u64>(line));
        } else if (word == "squawk") {
            r.setSquawk(next<u32>(line));
            r.setSquawkLastUpdate(next<u64>(line));
        } else if (word == "latitude") {
            r.setPosition(next<double>(line), 0);
            r.setPositionLastUpdate(next<u64>(line));
        } else if (word == "longitude") {
            r.setPosition(r.latitude(), next<double>(line));
            r.setPositionLastUpdate(next<u64>(line));
        } else if (word == "altitude") {
            r.setAltitudeBaro(next<i32>(line));
            r.setAltitudeBaroLastUpdate(next<u64>(line));
        } else if (word == "speed") {
            r.setGroundSpeed(next<double>(line));
            r.setGroundSpeedLastUpdate(next<u64>(line));
        } else if (word == "heading") {
            r.setHeading(next<double>(line));
            r.setHeadingLastUpdate(next<u64>(line));
        } else if (word == "climb") {
            r.setVerticalRateBaro(next<i32>(line));
            r.setVerticalRateBaroLastUpdate(next<u64>(line));
        } else if (word == "ground") {
            r.setGroundStatus(next<bool>(line));
            r.setGroundStatusLastUpdate(next<u64>(line));
        }
    }
    return r;
}

} // namespace

int main() {
    Log::setShowLevel(Log::Warning);
    ModeSDecoder decoder;
    ADSBTracker sender;
    u64 now = 1457996402000;
    for (const std::string& squitter :
         {std::string("\x8D\x48\x40\xD6\x20\x2C\xC3\x71\xC3\x2C\xE0\x57\x60\x98", 14),
          std::string("\x8D\x40\x62\x1D\x58\xC3\x86\x43\x5C\xC4\x12\x69\x2A\xD6", 14),
          std::string("\x8D\x40\x62\x1D\x58\xC3\x82\xD6\x90\xC8\xAC\x28\x63\xA7", 14)}) {
        const std::unique_ptr<ModeSMessage> message(
            decoder.decode(ModeSMessage::Downlink, squitter, now += 500));
        sender.procModeSMsg(message.get());
    }

    ADSBTracker receiver;
    for (const ADSBTarget& target : sender.allTargets()) {
        const ADSBTargetReport report = receive(send(target.report()));
        if (const ADSBTarget* taken = receiver.procTargetReport(&report)) {
            const ADSBTargetReport shown = taken->report();
            std::cout << "track " << shown.trackId() << ", " << shown.icaoAddressString() << ' '
                      << (shown.callsignValid() ? shown.callsign() : "--") << ", at "
                      << (shown.positionValid() ? shown.positionString() : "--") << '\n';
        }
    }
}
