// Decodes replies and tracks the aircraft that sent them: the decoder grades each reply, the
// tracker takes it into its table. Two position squitters, one even and one odd, give a position.
// Read credible_replies.cpp first. The README shows this example.

#include <ondrel/adsb_tracker.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <iostream>
#include <memory>
#include <string>

using namespace tolvarin::ondrel;

int main() {
    const struct {
        u64 stamp; // milliseconds since 1970-01-01 UTC
        std::string bytes;
    } receptions[] = {
        {1457996402000, {"\x8D\x40\x62\x1D\x58\xC3\x86\x43\x5C\xC4\x12\x69\x2A\xD6", 14}}, // odd
        {1457996402500, {"\x8D\x40\x62\x1D\x58\xC3\x82\xD6\x90\xC8\xAC\x28\x63\xA7", 14}}, // even
    };

    Log::setShowLevel(Log::Warning);
    ModeSDecoder decoder;
    ADSBTracker tracker;
    for (const auto& reception : receptions) {
        const std::unique_ptr<ModeSMessage> message(
            decoder.decode(ModeSMessage::Downlink, reception.bytes, reception.stamp));
        tracker.procModeSMsg(message.get()); // null or a reply graded too low changes nothing
    }
    for (const ADSBTarget& target : tracker.allTargets()) {
        if (target.altitudeBaroValid() && target.positionValid()) {
            std::cout << "track " << target.trackId() << ": " << target.altitudeBaro() << " ft at "
                      << target.latitude() << ' ' << target.longitude() << '\n';
        }
    }

    // An aircraft stays in the table until the application removes it.
    const u64 silentSince = receptions[1].stamp;
    std::cout << tracker.killTargets(silentSince).size() << " aircraft removed\n";
}
