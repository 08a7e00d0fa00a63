/// @file
/// Makes messages of the ten formats.
#pragma once

#include <ondrel/df_messages.h>

#include <array>
#include <memory>
#include <string>

namespace tolvarin::ondrel::test {

constexpr std::array<unsigned, 10> formats = {0, 4, 5, 11, 16, 17, 18, 19, 20, 21};

/// An empty message; null for a format without a class.
inline std::unique_ptr<DFMessage> makeMessage(unsigned format) {
    switch (format) {
    case 0:
        return std::make_unique<DF0Message>();
    case 4:
        return std::make_unique<DF4Message>();
    case 5:
        return std::make_unique<DF5Message>();
    case 11:
        return std::make_unique<DF11Message>();
    case 16:
        return std::make_unique<DF16Message>();
    case 17:
        return std::make_unique<DF17Message>();
    case 18:
        return std::make_unique<DF18Message>();
    case 19:
        return std::make_unique<DF19Message>();
    case 20:
        return std::make_unique<DF20Message>();
    case 21:
        return std::make_unique<DF21Message>();
    default:
        return nullptr;
    }
}

/// A reply as a decoder returns it.
inline std::unique_ptr<DFMessage> graded(const std::string& frame, u64 stamp,
                                         ModeSMessage::Confidence confidence = ModeSMessage::High) {
    auto message = makeMessage(static_cast<u8>(frame.at(0)) >> 3U);
    message->decode(frame);
    message->setConfidence(confidence);
    message->setTimeStamp(stamp);
    return message;
}

} // namespace tolvarin::ondrel::test
