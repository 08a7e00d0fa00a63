// What all Mode S messages share (ICAO Annex 10 Volume IV, 3.1.2): the raw bytes, their parity, and
// the repair by parity. Frames are strings of counted bytes and may contain zero bytes. A string
// may be longer than the frame: the bytes behind the frame are kept and not read.

#include <ondrel/mode_s_message.h>

#include "clock.h"
#include "lasting.h"
#include "parity.h"
#include "text.h"

#include <cstddef>
#include <utility>

namespace tolvarin::ondrel {

ModeSMessage::ModeSMessage(ModeSMsgType type)
    : _modeSMsgType(type), _timeStamp(clock::wholeSecondMilliseconds()) {}

ModeSMessage::ModeSMessage(const ModeSMessage&) = default;
ModeSMessage::ModeSMessage(ModeSMessage&&) noexcept = default;
ModeSMessage::~ModeSMessage() = default;

std::string ModeSMessage::description() const {
    return "Mode-S " + modeSMsgTypeName() + " Format Message";
}

bool ModeSMessage::decode(const std::string& data) {
    return decode(std::string(data));
}

bool ModeSMessage::decode(std::string&& data) {
    _data = std::move(data);
    const u8 frameBits = bits();
    if (_data.size() < frameBits / 8U) { // parity and fields keep what they held
        _valid = false;
        return false;
    }
    _calculatedParity = parity::sum(_data, frameBits);
    _valid = false; // in case of an exception
    _valid = decodeImpl();
    return _valid;
}

bool ModeSMessage::decode(const void* data, u64 size) {
    return decode(text::bytes(data, size));
}

std::string ModeSMessage::dataHexString() const {
    return text::hexBytes(_data);
}

std::string ModeSMessage::calculatedParityHexString() const {
    return text::hex(_calculatedParity);
}

std::string ModeSMessage::icaoAddressHexString() const {
    return text::hex(_icaoAddress);
}

const std::string& ModeSMessage::modeSMsgTypeName() const {
    static const std::string& uplink = lasting(std::string("Uplink"));
    static const std::string& downlink = lasting(std::string("Downlink"));
    return _modeSMsgType == Uplink ? uplink : downlink;
}

// The repairs test the length before they change anything. On false, data and positions stay as
// they were.

bool ModeSMessage::fixError1Bit(std::string& data, u8& pos, u32 parity) const {
    if (data.size() * 8 < bits()) {
        return false;
    }
    const auto found = parity::findBit(bits(), calculateParity(data) ^ parity);
    if (!found) {
        return false;
    }
    parity::invert(data, *found);
    pos = *found;
    return true;
}

bool ModeSMessage::fixError2Bits(std::string& data, u8& pos1, u8& pos2, u32 parity) const {
    if (data.size() * 8 < bits()) {
        return false;
    }
    const auto found = parity::findBitPair(bits(), calculateParity(data) ^ parity);
    if (!found) {
        return false;
    }
    parity::invert(data, found->first);
    parity::invert(data, found->second);
    pos1 = found->first;
    pos2 = found->second;
    return true;
}

u32 ModeSMessage::calculateParity(const std::string& data) const {
    return parity::sum(data, bits());
}

} // namespace tolvarin::ondrel
