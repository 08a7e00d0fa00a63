#pragma once

#include "apps/common/text.h"
#include "apps/decoding/decoded_reply.h"
#include "apps/reply_of_line.h"
#include "apps/tracking/tracking.h"

#include "simulator/frame_encoder.h"

#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Tracks lines of the form SECONDS,HEX one after the other.
class TrackedLines {
public:
    explicit TrackedLines(const std::vector<std::string>& lines,
                          const std::optional<AltitudeCheck>& check = std::nullopt)
        : tracking(check) {
        for (const std::string& line : lines) {
            const Reply reply = replyOf(line);
            tracking.moveTo(reply.stampMs.value_or(0));
            tracking.take(decodeReply(_decoder, reply).get());
        }
    }

    Tracking tracking;

private:
    ModeSDecoder _decoder;
};

/// Messages of three aircraft from the public literature on Mode S: two positions in three
/// messages, an identification and a velocity. The last line is believed only because its aircraft
/// is known.
inline std::vector<std::string> threeAircraft() {
    return {
        "0.500,8D40621D58C382D690C8AC2863A7",
        "1.000,8D40621D58C386435CC412692AD6",
        "2.000,8D40621D58C382D690C8AC2863A7",
        "3.500,8D4840D6202CC371C32CE0576098",
        "4.000,8D485020994409940838175B284F",
        "5.300," + hexBytes(simulator::df5(0x4840D6, {1}, 0123)),
    };
}

} // namespace tolvarin::ondrel::client
