// From bytes to the table of aircraft: the decoder grades each reply, the tracker takes it in. A
// pair of position squitters, even and odd, gives a position. Read credible_replies.cpp first.

#include <ondrel/adsb_tracker.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <iostream>
#include <memory>
#include <string>

using namespace tolvarin::ondrel;

namespace {

struct Reception {
    u64 milliseconds;
    std::string bytes;
};

const Reception receptions[] = {
    {1457996402000, {"\x8D\x40\x62\x1D\x58\xC3\x86\x43\x5C\xC4\x12\x69\x2A\xD6", 14}},
    {1457996402500, {"\x8D\x40\x62\x1D\x58\xC3\x82\xD6\x90\xC8\xAC\x28\x63\xA7", 14}},
};

} // namespace

int main() {
    Log::setShowLevel(Log::Warning);
    ModeSDecoder decoder;
    ADSBTracker tracker;
    for (const Reception& reception : receptions) {
        const std::unique_ptr<ModeSMessage> message(
            decoder.decode(ModeSMessage::Downlink, reception.bytes, reception.milliseconds));
        tracker.procModeSMsg(message.get()); // null and what is not believed change nothing
    }
    for (const ADSBTarget& target : tracker.allTargets()) {
        std::cout << "track " << target.trackId() << ": " << target.altitudeBaro() << " ft at "
                  << target.latitude() << ' ' << target.longitude() << '\n';
    }

    // Nothing expires by itself: what was silent for a minute is removed by the application.
    const u64 now = receptions[1].milliseconds + 60000;
    std::cout << tracker.killTargets(now - 60000).size() << " aircraft gone silent\n";
}
