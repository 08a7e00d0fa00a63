#include <ondrel/mode_s_decoder.h>

#include <ondrel/df_messages.h>
#include <ondrel/log.h>

#include "bits.h"
#include "clock.h"
#include "parity.h"
#include "text.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>

namespace tolvarin::ondrel {

namespace {

constexpr std::int64_t addressTimeout = 600;     // seconds
constexpr std::int64_t interrogatorTimeout = 60; // seconds
constexpr u32 interrogatorThreshold = 10;        // hits that make an interrogator reliable

const std::string moduleName = "ModeSDecoder";

bool isRecent(std::int64_t second, std::int64_t timeout, std::int64_t now) {
    return second + timeout >= now;
}

std::string inverted(std::string frame, std::initializer_list<u8> positions) {
    for (const u8 position : positions) {
        parity::invert(frame, position);
    }
    return frame;
}

/// The frame of a message that failed its parity, without the one or two inverted bits that explain
/// the failure; nothing when no such bits do.
std::optional<std::string> repair(const DFMessage& message, u32 receivedParity) {
    const char* format = message.downlinkFormatName().c_str();
    const std::string& frame = message.data();
    if (frame.size() >= message.size()) {
        const u32 difference = message.calculatedParity() ^ receivedParity;
        if (const auto bit = parity::findBit(message.bits(), difference)) {
            Log::log(Log::Info, moduleName, "Fix 1 bit error in %s message at %u.", format,
                     unsigned{*bit});
            return inverted(frame, {*bit});
        }
        if (const auto pair = parity::findBitPair(message.bits(), difference)) {
            Log::log(Log::Info, moduleName, "Fix 2 bits error in %s message at %u and %u.", format,
                     unsigned{pair->first}, unsigned{pair->second});
            return inverted(frame, {pair->first, pair->second});
        }
    }
    Log::log(Log::Info, moduleName, "Unable to fix error in %s message.", format);
    return std::nullopt;
}

/// Null where the reply does not decode.
template <class Message>
std::unique_ptr<Message> decoded(const std::string& data) {
    auto message = std::make_unique<Message>();
    return message->decode(data) ? std::move(message) : nullptr;
}

} // namespace

ModeSDecoder::ModeSDecoder() {
    Log::log(Log::Info, moduleName, "Initialized.");
}

ModeSDecoder::ModeSDecoder(const ModeSDecoder&) = default;
ModeSDecoder& ModeSDecoder::operator=(const ModeSDecoder&) = default;
ModeSDecoder::~ModeSDecoder() = default;

ModeSDecoder::ModeSDecoder(ModeSDecoder&& other) noexcept
    : _icaoAddresses(std::move(other._icaoAddresses)),
      _interrogators(std::exchange(other._interrogators, {})) {}

ModeSDecoder& ModeSDecoder::operator=(ModeSDecoder&& other) noexcept {
    if (this != &other) {
        _icaoAddresses = std::move(other._icaoAddresses);
        _interrogators = std::exchange(other._interrogators, {});
    }
    return *this;
}

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const std::string& data) {
    if (data.empty()) {
        return nullptr;
    }
    const Seconds now = clock::seconds();
    if (type != ModeSMessage::Downlink) {
        Log::log(Log::Debug, moduleName, "Unsupported UF message detected.");
        return nullptr;
    }
    const auto code = static_cast<u8>(bits::read<0, 5>(data));
    const DFMessage::DownlinkFormat format = DFMessage::downlinkFormatByCode(code);
    switch (format) {
    case DFMessage::DF0:
        return decodeAltitudeReply<DF0Message>(data, now);
    case DFMessage::DF4:
        return decodeAltitudeReply<DF4Message>(data, now);
    case DFMessage::DF5:
        return decodeIdentityReply<DF5Message>(data, now);
    case DFMessage::DF11:
        return decodeAllCallReply(data, now);
    case DFMessage::DF16:
        return decodeAltitudeReply<DF16Message>(data, now);
    case DFMessage::DF17:
        return decodeSquitter<DF17Message>(data, now);
    case DFMessage::DF18:
        return decodeSquitter<DF18Message>(data, now);
    case DFMessage::DF19:
        return decodeMilitarySquitter(data, now);
    case DFMessage::DF20:
        return decodeAltitudeReply<DF20Message>(data, now);
    case DFMessage::DF21:
        return decodeIdentityReply<DF21Message>(data, now);
    default:
        Log::log(Log::Debug, moduleName, "Undefined DF-%u message detected.",
                 static_cast<unsigned>(format));
        return nullptr;
    }
}

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const std::string& data,
                                   u64 timeStamp) {
    ModeSMessage* message = decode(type, data);
    if (message != nullptr && timeStamp > 0) {
        message->setTimeSource(ModeSMessage::External);
        message->setTimeStamp(timeStamp);
    }
    return message;
}

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size) {
    return decode(type, text::bytes(data, size));
}

ModeSMessage* ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size,
                                   u64 timeStamp) {
    return decode(type, text::bytes(data, size), timeStamp);
}

/// A known and recent address proves a reply that hides it, and stays recent by it.
ModeSMessage::Confidence ModeSDecoder::gradeByAddress(u32 address, Seconds now) {
    Seconds* proved = _icaoAddresses.find(address);
    if (proved == nullptr || !isRecent(*proved, addressTimeout, now)) {
        return ModeSMessage::Low;
    }
    *proved = now;
    return ModeSMessage::High;
}

template <class Message>
ModeSMessage* ModeSDecoder::decodeIdentityReply(const std::string& data, Seconds now) {
    auto message = decoded<Message>(data);
    if (!message) {
        return nullptr;
    }
    message->setConfidence(gradeByAddress(message->icaoAddress(), now));
    return message.release();
}

/// An altitude in metres, which nobody sends, speaks for noise; its address stays recent by it all
/// the same.
template <class Message>
ModeSMessage* ModeSDecoder::decodeAltitudeReply(const std::string& data, Seconds now) {
    auto message = decoded<Message>(data);
    if (!message) {
        return nullptr;
    }
    const ModeSMessage::Confidence confidence = gradeByAddress(message->icaoAddress(), now);
    const bool believable = message->constFieldAC().altitudeUnit() == Feet;
    message->setConfidence(believable ? confidence : ModeSMessage::None);
    return message.release();
}

ModeSMessage* ModeSDecoder::decodeAllCallReply(const std::string& data, Seconds now) {
    auto message = decoded<DF11Message>(data);
    if (!message) {
        return nullptr;
    }
    const ModeSMessageFieldPI& pi = message->constFieldPI();
    if (pi.interrogatorIdValid()) {
        message->setConfidence(gradeAllCall(message->icaoAddress(), pi.interrogatorId(), now));
    } else {
        Log::log(Log::Info, moduleName, "Invalid interrogator id, II = %u", pi.interrogatorId());
    }
    return message.release();
}

/// Recent addresses build an interrogator up; a reliable one vouches for addresses in turn.
ModeSMessage::Confidence ModeSDecoder::gradeAllCall(u32 address, u32 interrogator, Seconds now) {
    Seconds* proved = _icaoAddresses.find(address);
    const bool addressRecent = proved != nullptr && isRecent(*proved, addressTimeout, now);
    const auto knownInterrogator = _interrogators.find(interrogator);
    const bool interrogatorRecent =
        knownInterrogator != _interrogators.end() &&
        isRecent(knownInterrogator->second.lastSeen, interrogatorTimeout, now);

    if (!addressRecent &&
        !(interrogatorRecent && knownInterrogator->second.hitCount >= interrogatorThreshold)) {
        return ModeSMessage::None;
    }
    if (proved != nullptr) {
        *proved = now;
    } else {
        _icaoAddresses[address] = now;
    }
    InterrogatorRecord& record = _interrogators[interrogator];
    record.lastSeen = now;
    if (!interrogatorRecent) {
        record.hitCount = 1;
        return ModeSMessage::Low;
    }
    ++record.hitCount;
    const bool reliable = record.hitCount >= interrogatorThreshold || interrogator == 0;
    return !addressRecent || reliable ? ModeSMessage::High : ModeSMessage::Medium;
}

template <class Message>
ModeSMessage* ModeSDecoder::decodeSquitter(const std::string& data, Seconds now) {
    auto message = std::make_unique<Message>();
    if (!message->decode(data)) {
        const auto repaired = repair(*message, message->constFieldPI().parity());
        if (!repaired) {
            return nullptr;
        }
        if (!message->decode(*repaired)) {
            Log::log(Log::Critical, moduleName, "Faild to decode %s message after CRC fixing.",
                     message->downlinkFormatName().c_str());
            return nullptr;
        }
    }
    message->setConfidence(ModeSMessage::High);
    _icaoAddresses[message->icaoAddress()] = now;
    return message.release();
}

ModeSMessage* ModeSDecoder::decodeMilitarySquitter(const std::string& data, Seconds now) {
    auto message = decoded<DF19Message>(data);
    if (!message) {
        return nullptr;
    }
    if (message->constFieldAF().code() != 0) {
        message->setConfidence(ModeSMessage::Low);
        return message.release();
    }
    message->setConfidence(ModeSMessage::High);
    _icaoAddresses[message->icaoAddress()] = now;
    return message.release();
}

} // namespace tolvarin::ondrel
