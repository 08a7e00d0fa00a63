#pragma once

#include "apps/decoded_reply.h"

#include <ondrel/types.h>

#include <array>
#include <string>

namespace tolvarin::ondrel::client {

/// Counts what a run has decoded.
class DecodeSummary {
public:
    void count(const DecodedReply& decoded);

    /// The counts as a table in several lines, the last one without its end. Only formats that
    /// occurred have a line.
    std::string text(u64 unreadableLines) const;

private:
    u64 _replies = 0;
    u64 _refused = 0;
    u64 _repaired = 0;
    u64 _payloads = 0;
    u64 _payloadsRefused = 0;
    std::array<u64, 25> _byFormat{};    ///< of decoded replies, by DFMessage::DownlinkFormat
    std::array<u64, 4> _byConfidence{}; ///< likewise, by ModeSMessage::Confidence
};

} // namespace tolvarin::ondrel::client
