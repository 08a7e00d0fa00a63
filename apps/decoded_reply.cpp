#include "apps/decoded_reply.h"

#include <array>
#include <cstddef>
#include <utility>

namespace tolvarin::ondrel::client {

std::string DecodedReply::formatName() const {
    if (!refused()) {
        return message->downlinkFormatName();
    }
    const auto code = static_cast<u8>(static_cast<u8>(reply.bytes.front()) >> 3U);
    return "DF-" + std::to_string(DFMessage::downlinkFormatByCode(code));
}

DecodedReply decodeReply(ModeSDecoder& decoder, Reply reply) {
    // The decoder takes 0 for a reply without a stamp.
    const ModeSMessage* message =
        decoder.decode(ModeSMessage::Downlink, reply.bytes, reply.stampMs.value_or(0));
    // Downlink messages are of a downlink format.
    return {std::move(reply),
            std::unique_ptr<const DFMessage>(static_cast<const DFMessage*>(message)), std::nullopt};
}

std::string_view confidenceName(ModeSMessage::Confidence confidence) {
    constexpr std::array<std::string_view, 4> names = {"None", "Low", "Medium", "High"};
    return names.at(static_cast<std::size_t>(confidence));
}

} // namespace tolvarin::ondrel::client
