/// @file
/// The input of the benchmarks: replies of a thousand aircraft in random order, and traffic.
#pragma once

#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>
#include <ondrel/types.h>

#include "compare.h"
#include "floor.h"

#include "simulator/frame_encoder.h"
#include "simulator/traffic.h"

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::bench {

constexpr std::size_t aircraftCount = 1000;

// NOLINTBEGIN(cert-msc51-cpp): every run measures the same

inline const std::vector<u32>& addresses() {
    static const std::vector<u32> all = [] {
        std::mt19937 random(1);
        std::set<u32> drawn;
        while (drawn.size() < aircraftCount) {
            drawn.insert(static_cast<u32>(random()) & 0xFFFFFF);
        }
        return std::vector<u32>(drawn.begin(), drawn.end());
    }();
    return all;
}

/// Which aircraft replies next. The sequence is too long for the branch prediction of a processor,
/// as real traffic is. A short order that repeats would be learnt, and look-ups would seem too
/// fast.
inline const std::vector<std::size_t>& order() {
    static const std::vector<std::size_t> all = [] {
        std::mt19937 random(2);
        std::vector<std::size_t> aircraft(1U << 14);
        for (std::size_t& next : aircraft) {
            next = random() % aircraftCount;
        }
        return aircraft;
    }();
    return all;
}

// NOLINTEND(cert-msc51-cpp)

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

// Traffic

enum class Kind { Mixed, Squitters, Surveillance, Damaged };

/// A reply as received, compact in memory, so that reading the input takes little time.
struct Heard {
    std::array<char, longBytes> bytes;
    u8 size;
    u64 timeMs;

    std::string_view frame() const { return {bytes.data(), size}; }
    bool isSquitter() const { return static_cast<u8>(bytes.front()) >> 3U == DFMessage::DF17; }
};

/// 40000 replies in the order of time, all of aircraft that the tracker tracks. Of damaged traffic,
/// one reply in twenty has wrong bits.
inline std::vector<Heard> makeStream(Kind kind, unsigned aircraft) {
    constexpr std::size_t length = 40000;
    simulator::TrafficOptions options;
    options.aircraft = aircraft;
    options.df18Share = 0; // DF-18 and DF-19 are not tracked, which would be less work
    options.df19Share = 0;
    options.seconds = 3600;
    if (kind == Kind::Damaged) {
        options.damage.oneBit = 0.025;
        options.damage.twoBits = 0.01;
        options.damage.manyBits = 0.015;
    }
    simulator::Traffic traffic(options);
    std::vector<Heard> replies;
    while (replies.size() < length) {
        const auto reply = traffic.next();
        if (!reply) {
            break;
        }
        Heard heard{};
        heard.size = static_cast<u8>(reply->bytes.copy(heard.bytes.data(), longBytes));
        heard.timeMs = reply->timeMs;
        if ((kind != Kind::Squitters || heard.isSquitter()) &&
            (kind != Kind::Surveillance || !heard.isSquitter())) {
            replies.push_back(heard);
        }
    }
    return replies;
}

/// The same, made once.
inline const std::vector<Heard>& stream(Kind kind, unsigned aircraft) {
    static std::map<std::pair<Kind, unsigned>, std::vector<Heard>> all;
    const auto [entry, isNew] = all.try_emplace({kind, aircraft});
    if (isNew) {
        entry->second = makeStream(kind, aircraft);
    }
    return entry->second;
}

/// Calls `hear` with the replies of the mixed traffic. Twice: the first replies of an aircraft may
/// come before the squitter that proves its address.
template <class Hear>
void hearTwice(unsigned aircraft, Hear hear) {
    for (int pass = 0; pass < 2; ++pass) {
        for (const Heard& reply : stream(Kind::Mixed, aircraft)) {
            hear(reply);
        }
    }
}

/// A decoder and a tracker as an application joins them.
class Sky {
public:
    /// Knows the aircraft of the mixed traffic.
    explicit Sky(unsigned aircraft) {
        hearTwice(aircraft, [this](const Heard& reply) { hear(reply); });
    }

    /// Decodes, tracks and deletes a reply.
    void hear(const Heard& reply) {
        const Message message(
            _decoder.decode(ModeSMessage::Downlink, reply.bytes.data(), reply.size, reply.timeMs));
        benchmark::DoNotOptimize(_tracker.procModeSMsg(message.get()));
    }

    /// Nanoseconds for one reply of the stream.
    double timeToHear(const std::vector<Heard>& replies) {
        const auto hearOne = [&](std::size_t i) { hear(replies[i]); };
        return timePerItem(replies.size(), hearOne);
    }

    ADSBTracker& tracker() { return _tracker; }

private:
    ModeSDecoder _decoder;
    ADSBTracker _tracker;
};

} // namespace tolvarin::ondrel::bench
