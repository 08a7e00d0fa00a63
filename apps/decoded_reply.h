#pragma once

#include "apps/adsb_payload.h"
#include "apps/reply_line.h"

#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// A reply and what was made of it.
struct DecodedReply {
    Reply reply;
    std::unique_ptr<const DFMessage> message; ///< null: the decoder refused the reply
    std::optional<AdsbPayload> payload;       ///< where one was asked for, and the reply has one

    bool refused() const { return message == nullptr; }

    /// Whether the message has other bits than were received.
    bool repaired() const { return !refused() && message->data() != reply.bytes; }

    /// "DF-0" to "DF-24"; that of a refused reply is what its first bits say.
    std::string formatName() const;
};

/// Decodes a reply that holds at least one byte; leaves its payload alone.
DecodedReply decodeReply(ModeSDecoder& decoder, Reply reply);

/// "None", "Low", "Medium" or "High".
std::string_view confidenceName(ModeSMessage::Confidence confidence);

} // namespace tolvarin::ondrel::client
