/// @file
/// The input of the benchmarks: replies of a thousand aircraft in random order.
#pragma once

#include <ondrel/mode_s_decoder.h>
#include <ondrel/types.h>

#include "simulator/frame_encoder.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace tolvarin::ondrel::bench {

constexpr std::size_t aircraftCount = 1000;

// NOLINTBEGIN(cert-msc51-cpp): every run measures the same

inline std::vector<u32> makeAddresses() {
    std::mt19937 random(1);
    std::set<u32> drawn;
    std::vector<u32> addresses;
    while (addresses.size() < aircraftCount) {
        const u32 address = static_cast<u32>(random()) & 0xFFFFFF;
        if (drawn.insert(address).second) {
            addresses.push_back(address);
        }
    }
    return addresses;
}

inline std::vector<std::size_t> makeOrder() {
    constexpr std::size_t length = 1U << 14;
    std::mt19937 random(2);
    std::vector<std::size_t> order(length);
    for (std::size_t& aircraft : order) {
        aircraft = random() % aircraftCount;
    }
    return order;
}

// NOLINTEND(cert-msc51-cpp)

inline const std::vector<u32>& addresses() {
    static const std::vector<u32> all = makeAddresses();
    return all;
}

/// Which aircraft replies next. The sequence is too long for the branch prediction of a processor,
/// as real traffic is. A short order that repeats would be learnt, and look-ups would seem too
/// fast.
inline const std::vector<std::size_t>& order() {
    static const std::vector<std::size_t> all = makeOrder();
    return all;
}

/// An identification message.
inline const std::string payload = "\x20\x2C\xC3\x71\xC3\x2C\xE0";

inline std::string squitter(u32 address) {
    return simulator::df17(address, 5, payload);
}

/// One frame for each aircraft.
template <class Encode>
std::vector<std::string> framesOfAll(Encode encode) {
    std::vector<std::string> frames;
    for (const u32 address : addresses()) {
        frames.push_back(encode(address));
    }
    return frames;
}

using Message = std::unique_ptr<ModeSMessage>;

inline Message decoded(ModeSDecoder& decoder, const std::string& frame) {
    return Message(decoder.decode(ModeSMessage::Downlink, frame));
}

/// A decoder that knows all aircraft.
inline ModeSDecoder experiencedDecoder() {
    ModeSDecoder decoder;
    for (const u32 address : addresses()) {
        decoded(decoder, squitter(address));
    }
    return decoder;
}

/// The table for a floor, with all aircraft.
inline std::map<u32, std::int64_t> knownAddresses() {
    std::map<u32, std::int64_t> known;
    for (const u32 address : addresses()) {
        known.emplace(address, 1);
    }
    return known;
}

} // namespace tolvarin::ondrel::bench
