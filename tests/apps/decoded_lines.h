#pragma once

#include "apps/decoded_reply.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tolvarin::ondrel::client {

/// Decodes lines one after the other, payloads included; gives what it made of the last.
inline DecodedReply decodedLast(const std::vector<std::string>& lines,
                                std::optional<MOPSVersion> version = std::nullopt) {
    ModeSDecoder decoder;
    PayloadDecoder payloads(version);
    DecodedReply last;
    for (const std::string& line : lines) {
        last = decodeReply(decoder, std::get<Reply>(parseReplyLine(line)));
        if (!last.refused()) {
            last.payload = payloads.decode(*last.message);
        }
    }
    return last;
}

} // namespace tolvarin::ondrel::client
