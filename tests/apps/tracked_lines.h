#pragma once

#include "apps/input/reply_line.h"
#include "apps/tracking/tracking.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tolvarin::ondrel::client {

/// Tracks lines of the form SECONDS,HEX one after the other.
class TrackedLines {
public:
    explicit TrackedLines(const std::vector<std::string>& lines,
                          const std::optional<AltitudeCheck>& check = std::nullopt)
        : tracking(check) {
        for (const std::string& line : lines) {
            auto reply = std::get<Reply>(parseReplyLine(line));
            tracking.moveTo(reply.stampMs.value_or(0));
            tracking.take(decodeReply(_decoder, std::move(reply)));
        }
    }

    Tracking tracking;

private:
    ModeSDecoder _decoder;
};

} // namespace tolvarin::ondrel::client
