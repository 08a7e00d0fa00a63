// Moves tracks from one tracker to another, as two processes would do it. The sender writes what is
// valid in a report. The receiver fills a new report through the setters: first the value, which
// also sets the flag, then the times. Read track_aircraft.cpp first.

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

/// The application chooses the wire format. Here it is a line of text: number, address and time of
/// the track, then a word for each datum, its value and its times. Only three data are sent, to
/// keep it short.
std::string send(const ADSBTargetReport& report) {
    std::ostringstream line;
    line << std::setprecision(17);
    line << report.trackId() << ' ' << report.icaoAddress() << ' ' << report.lastUpdate();
    if (report.callsignValid()) {
        line << " callsign " << std::quoted(report.callsign()) << ' ' << report.callsignLastUpdate()
             << ' ' << report.callsignLastChange();
    }
    if (report.positionValid()) {
        line << " position " << report.latitude() << ' ' << report.longitude() << ' '
             << report.positionLastUpdate();
    }
    if (report.altitudeBaroValid()) {
        line << " altitude " << report.altitudeBaro() << ' ' << report.altitudeBaroLastUpdate();
    }
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
    ADSBTargetReport report;
    report.setTrackId(next<u32>(line));
    report.setIcaoAddress(next<u32>(line));
    report.setLastUpdate(next<u64>(line));
    for (std::string word; line >> word;) {
        if (word == "callsign") {
            std::string callsign;
            line >> std::quoted(callsign);
            report.setCallsign(callsign);
            report.setCallsignLastUpdate(next<u64>(line));
            report.setCallsignLastChange(next<u64>(line));
        } else if (word == "position") {
            const auto latitude = next<double>(line);
            report.setPosition(latitude, next<double>(line));
            report.setPositionLastUpdate(next<u64>(line));
        } else if (word == "altitude") {
            report.setAltitudeBaro(next<i32>(line));
            report.setAltitudeBaroLastUpdate(next<u64>(line));
        }
    }
    return report;
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
