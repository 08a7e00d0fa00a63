// The steps of a reply: its class by downlink format, its repair and its grade. One function for
// each kind of format (ICAO Annex 10 Volume IV, 3.1.2.5 to 3.1.2.8); grading.h has the rules of the
// grades.

#include <ondrel/mode_s_decoder.h>

#include <ondrel/df_messages.h>
#include <ondrel/log.h>

#include "bits.h"
#include "grading.h"
#include "parity.h"
#include "text.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>

namespace tolvarin::ondrel {

namespace {

using Seconds = Grading::Seconds;

constexpr const char* moduleName = "ModeSDecoder";

std::string inverted(std::string frame, std::initializer_list<u8> positions) {
    for (const u8 position : positions) {
        parity::invert(frame, position);
    }
    return frame;
}

/// Searches for the one or two inverted bits that explain why the parity failed. Gives the frame
/// with these bits inverted back; nothing if no such bits exist. Writes the result to the log.
///
/// One bit is more likely than two, so it goes first. A frame without a pair has no single wrong
/// bit either: each bit is also one of a pair, together with a bit of the parity field. Most frames
/// have no pair, so that is tried first. Positions count from 0. A frame that is too short is not
/// repaired.
std::optional<std::string> repair(const DFMessage& message, u32 receivedParity) {
    constexpr u8 frameBits = parity::longBits; // of all formats that are repaired
    const u32 difference = message.calculatedParity() ^ receivedParity;
    const char* format = message.downlinkFormatName().c_str();
    const std::string& frame = message.data();
    const auto pair =
        frame.size() * 8 >= frameBits ? parity::findBitPair(frameBits, difference) : std::nullopt;
    if (!pair) {
        Log::log(Log::Info, moduleName, "Unable to fix error in %s message.", format);
        return std::nullopt;
    }
    if (const auto bit = parity::findBit(frameBits, difference)) {
        Log::log(Log::Info, moduleName, "Fix 1 bit error in %s message at %u.", format,
                 unsigned{*bit});
        return inverted(frame, {*bit});
    }
    Log::log(Log::Info, moduleName, "Fix 2 bits error in %s message at %u and %u.", format,
             unsigned{pair->first}, unsigned{pair->second});
    return inverted(frame, {pair->first, pair->second});
}

/// The second in which the message was built: the only reading of the clock for a reply. A stamp
/// of the caller comes later, so it does not count here.
Seconds secondOf(const ModeSMessage& message) {
    return static_cast<Seconds>(message.timeStamp()) / 1000;
}

/// A new message of the class, decoded; null if the frame does not decode.
template <class Message>
std::unique_ptr<Message> decoded(std::string&& data) {
    auto message = std::make_unique<Message>();
    return message->decode(std::move(data)) ? std::move(message) : nullptr;
}

/// DF-5 and DF-21: the grade follows from the address alone.
template <class Message>
ModeSMessage* decodeIdentityReply(std::string&& data, Grading& grading) {
    auto message = decoded<Message>(std::move(data));
    if (!message) {
        return nullptr;
    }
    message->setConfidence(grading.gradeByAddress(message->icaoAddress(), secondOf(*message)));
    return message.release();
}

/// DF-0, 4, 16 and 20. No aircraft sends its altitude in metres, so a set M bit means noise: the
/// reply gets the grade None. A known address is refreshed all the same.
template <class Message>
ModeSMessage* decodeAltitudeReply(std::string&& data, Grading& grading) {
    auto message = decoded<Message>(std::move(data));
    if (!message) {
        return nullptr;
    }
    const ModeSMessage::Confidence byAddress =
        grading.gradeByAddress(message->icaoAddress(), secondOf(*message));
    const bool inFeet = message->constFieldAC().altitudeUnit() == Feet;
    message->setConfidence(inFeet ? byAddress : ModeSMessage::None);
    return message.release();
}

/// DF-11: the address is in clear, and the interrogator identifier shows what the reply is worth. A
/// damaged reply nearly always has an identifier above 79. It keeps the grade None.
ModeSMessage* decodeAllCallReply(std::string&& data, Grading& grading) {
    auto message = decoded<DF11Message>(std::move(data));
    if (!message) {
        return nullptr;
    }
    const ModeSMessageFieldPI& pi = message->constFieldPI();
    if (pi.interrogatorIdValid()) {
        message->setConfidence(
            grading.gradeAllCall(message->icaoAddress(), pi.interrogatorId(), secondOf(*message)));
    } else {
        Log::log(Log::Info, moduleName, "Invalid interrogator id, II = %u", pi.interrogatorId());
    }
    return message.release();
}

/// DF-17 and DF-18, the only formats that are repaired. A good parity proves the address; a
/// repaired frame counts as a good one.
template <class Message>
ModeSMessage* decodeSquitter(std::string&& data, Grading& grading) {
    auto message = std::make_unique<Message>();
    if (!message->decode(std::move(data))) {
        auto repaired = repair(*message, message->constFieldPI().parity());
        if (!repaired) {
            return nullptr;
        }
        if (!message->decode(std::move(*repaired))) { // the repair changed the format bits
            // Programs read this line, so its misspelling stays.
            Log::log(Log::Critical, moduleName, "Faild to decode %s message after CRC fixing.",
                     message->downlinkFormatName().c_str());
            return nullptr;
        }
    }
    message->setConfidence(ModeSMessage::High);
    grading.refresh(message->icaoAddress(), secondOf(*message));
    return message.release();
}

/// DF-19, which is not repaired. With an AF other than 0 its contents are not public, so the
/// message has no address and teaches the decoder nothing.
ModeSMessage* decodeMilitarySquitter(std::string&& data, Grading& grading) {
    auto message = decoded<DF19Message>(std::move(data));
    if (!message) {
        return nullptr;
    }
    if (message->constFieldAF().code() != 0) {
        message->setConfidence(ModeSMessage::Low);
        return message.release();
    }
    message->setConfidence(ModeSMessage::High);
    grading.refresh(message->icaoAddress(), secondOf(*message));
    return message.release();
}

/// The bytes of a downlink, of which there is at least one.
ModeSMessage* decodeDownlink(std::string&& data, Grading& grading) {
    const auto code = static_cast<u8>(bits::read<0, 5>(data));
    const DFMessage::DownlinkFormat format = DFMessage::downlinkFormatByCode(code);
    switch (format) {
    case DFMessage::DF0:
        return decodeAltitudeReply<DF0Message>(std::move(data), grading);
    case DFMessage::DF4:
        return decodeAltitudeReply<DF4Message>(std::move(data), grading);
    case DFMessage::DF5:
        return decodeIdentityReply<DF5Message>(std::move(data), grading);
    case DFMessage::DF11:
        return decodeAllCallReply(std::move(data), grading);
    case DFMessage::DF16:
        return decodeAltitudeReply<DF16Message>(std::move(data), grading);
    case DFMessage::DF17:
        return decodeSquitter<DF17Message>(std::move(data), grading);
    case DFMessage::DF18:
        return decodeSquitter<DF18Message>(std::move(data), grading);
    case DFMessage::DF19:
        return decodeMilitarySquitter(std::move(data), grading);
    case DFMessage::DF20:
        return decodeAltitudeReply<DF20Message>(std::move(data), grading);
    case DFMessage::DF21:
        return decodeIdentityReply<DF21Message>(std::move(data), grading);
    default:
        Log::log(Log::Debug, moduleName, "Undefined DF-%u message detected.",
                 static_cast<unsigned>(format));
        return nullptr;
    }
}

/// Takes over the bytes. So each reply is copied once, wherever its bytes come from.
ModeSMessage* decodeReply(ModeSMessage::ModeSMsgType type, std::string&& data,
                          std::unique_ptr<Grading>& grading) {
    if (data.empty()) {
        return nullptr;
    }
    if (type != ModeSMessage::Downlink) {
        Log::log(Log::Debug, moduleName, "Unsupported UF message detected.");
        return nullptr;
    }
    if (!grading) { // that of a new decoder, or of one that was moved from
        grading = std::make_unique<Grading>();
    }
    return decodeDownlink(std::move(data), *grading);
}

/// A stamp of 0 means that the caller has none. The message then keeps its time of construction.
ModeSMessage* stamped(ModeSMessage* message, u64 timeStamp) {
    if (message != nullptr && timeStamp > 0) {
        message->setTimeSource(ModeSMessage::External);
        message->setTimeStamp(timeStamp);
    }
    return message;
}

} // namespace

ModeSDecoder::ModeSDecoder() {
    Log::log(Log::Info, moduleName, "Initialized.");
}

ModeSDecoder::ModeSDecoder(const ModeSDecoder& other)
    : _grading(other._grading ? std::make_unique<Grading>(*other._grading) : nullptr) {}

ModeSDecoder& ModeSDecoder::operator=(const ModeSDecoder& other) {
    return *this = ModeSDecoder(other);
}

ModeSDecoder::ModeSDecoder(ModeSDecoder&&) noexcept = default;
ModeSDecoder& ModeSDecoder::operator=(ModeSDecoder&&) noexcept = default;
ModeSDecoder::~ModeSDecoder() = default;

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const std::string& data) {
    return decodeReply(type, std::string(data), _grading);
}

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const std::string& data,
                                   u64 timeStamp) {
    return stamped(decode(type, data), timeStamp);
}

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size) {
    return decodeReply(type, text::bytes(data, size), _grading);
}

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size,
                                   u64 timeStamp) {
    return stamped(decode(type, data, size), timeStamp);
}

} // namespace tolvarin::ondrel
