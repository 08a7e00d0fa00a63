#pragma once

#include "apps/common/text.h"
#include "apps/decoding/decoded_reply.h"
#include "apps/reply_of_line.h"

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"

#include <optional>
#include <string>
#include <vector>

/// Lines of a recording and what they decode to.
namespace tolvarin::ondrel::client {

/// Decodes lines one after the other, payloads included, and gives the result of the last one.
inline DecodedReply decodedLast(const std::vector<std::string>& lines,
                                std::optional<MOPSVersion> version = std::nullopt) {
    ModeSDecoder decoder;
    PayloadDecoder payloads(version);
    DecodedReply last;
    for (const std::string& line : lines) {
        last.reply = replyOf(line);
        last.message = decodeReply(decoder, last.reply);
        last.payload = payloads.decode(last.message.get());
    }
    return last;
}

// A position of 40621D from the public literature on Mode S. An error within the parity field
// itself cannot be repaired.
inline const std::string good = "8D40621D58C382D690C8AC2863A7";
inline const std::string oneBitWrong = "8D40621D59C382D690C8AC2863A7";
inline const std::string beyondRepair = "8D40621D58C382D690C8AC2863A6";

constexpr u32 address = 0x4840D6;

inline std::string squitter(const std::string& me, u32 sender = address) {
    return hexBytes(simulator::df17(sender, 5, me));
}

/// An operational status that announces a version.
inline std::string announcement(unsigned version) {
    simulator::OperationalStatus status;
    status.version = version;
    return simulator::operationalStatus(status);
}

// A velocity that the library does not decode.
inline const std::string airSpeed = simulator::airVelocity({}, 90, 300, false);
inline const std::string airSpeedRefused =
    "TC=AIR_VEL, not decoded: air speed (type code 19, MOPS version 0)";

} // namespace tolvarin::ondrel::client
