// Tracks move from one tracker to another through reports, as two processes would do it: the sender
// reads the getters, the receiver fills a new report through the setters, value first, then flag
// and times. Read track_aircraft.cpp first.

#include <ondrel/adsb_tracker.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>

using namespace tolvarin::ondrel;

namespace {

/// What goes over the wire here is up to the application; a line of text serves.
std::string send(const ADSBTargetReport& report) {
    std::ostringstream line;
    line << report.lastUpdate() << ' ' << report.icaoAddress() << ' ' << report.callsignLastUpdate()
         << ' ' << report.callsignLastChange() << ' ' << report.callsign();
    return line.str();
}

ADSBTargetReport receive(const std::string& line) {
    std::istringstream in(line);
    u64 lastUpdate = 0;
    u64 callsignLastUpdate = 0;
    u64 callsignLastChange = 0;
    u32 address = 0;
    std::string callsign;
    in >> lastUpdate >> address >> callsignLastUpdate >> callsignLastChange;
    in.get();
    std::getline(in, callsign);

    ADSBTargetReport report;
    report.setLastUpdate(lastUpdate);
    report.setIcaoAddress(address);
    report.setCallsign(callsign); // sets the flag as well
    report.setCallsignLastUpdate(callsignLastUpdate);
    report.setCallsignLastChange(callsignLastChange);
    return report;
}

} // namespace

int main() {
    Log::setShowLevel(Log::Warning);
    ModeSDecoder decoder;
    ADSBTracker sender;
    const std::string squitter("\x8D\x48\x40\xD6\x20\x2C\xC3\x71\xC3\x2C\xE0\x57\x60\x98", 14);
    const std::unique_ptr<ModeSMessage> message(
        decoder.decode(ModeSMessage::Downlink, squitter, 1457996402000));
    sender.procModeSMsg(message.get());

    ADSBTracker receiver;
    for (const ADSBTarget& target : sender.allTargets()) {
        const ADSBTargetReport report = receive(send(target.report()));
        const ADSBTarget* taken = receiver.procTargetReport(&report);
        if (taken != nullptr) {
            std::cout << taken->report().icaoAddressString() << " is " << taken->callsign()
                      << "here too\n";
        }
    }
}
