// The whole road of a reply: decode it, track it, delete it.

#include "parity.h"

#include "compare.h"
#include "samples.h"

#include "simulator/traffic.h"

#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

constexpr std::size_t frameBytes = 14;
constexpr std::size_t mostReplies = 40000;

/// A reply as received, compact in memory, so that reading the input takes little time.
struct Heard {
    std::array<char, frameBytes> bytes;
    u8 size;
    u32 address;
    u64 timeMs;
};

bool isSquitter(const Heard& reply) {
    return static_cast<u8>(reply.bytes.front()) >> 3U == DFMessage::DF17;
}

enum class Kind { Mixed, Squitters, Surveillance, Damaged };

bool belongsTo(Kind kind, const Heard& reply) {
    return kind == Kind::Squitters ? isSquitter(reply)
                                   : kind != Kind::Surveillance || !isSquitter(reply);
}

/// Traffic in the order of time. Of damaged traffic, one reply in twenty is damaged.
std::vector<Heard> makeStream(Kind kind, unsigned aircraft) {
    simulator::TrafficOptions options;
    options.aircraft = aircraft;
    options.seconds = 3600;
    if (kind == Kind::Damaged) {
        options.damage.oneBit = 0.025;
        options.damage.twoBits = 0.01;
        options.damage.manyBits = 0.015;
    }
    simulator::Traffic traffic(options);
    std::vector<Heard> replies;
    while (replies.size() < mostReplies) {
        const auto reply = traffic.next();
        if (!reply) {
            break;
        }
        Heard heard{};
        heard.size = static_cast<u8>(reply->bytes.copy(heard.bytes.data(), frameBytes));
        heard.address = reply->truth.address;
        heard.timeMs = reply->timeMs;
        if (belongsTo(kind, heard)) {
            replies.push_back(heard);
        }
    }
    return replies;
}

/// Not inlined, for the reason that floor.h gives.
[[gnu::noinline]] bool isKnown(const std::unordered_map<u32, std::int64_t>& known, u32 address) {
    return known.find(address) != known.end();
}

// Sizes of a message and of a payload. Numbers, so that the floor does not change with a class.
constexpr std::size_t longMessageBytes = 208;
constexpr std::size_t shortMessageBytes = 176;
constexpr std::size_t payloadBytes = 152;

void allocate(std::size_t bytes) {
    const std::unique_ptr<std::byte[]> block(new std::byte[bytes]);
    benchmark::DoNotOptimize(block.get());
}

/// Memory for the message, for a squitter memory for its payload too, the parity of the frame, and
/// one look-up of the address in a std::unordered_map.
void floorOf(const Heard& reply, const std::unordered_map<u32, std::int64_t>& known) {
    if (isSquitter(reply)) {
        allocate(payloadBytes);
    }
    const bool isLong = reply.size == frameBytes;
    allocate(isLong ? longMessageBytes : shortMessageBytes);
    const std::string_view frame(reply.bytes.data(), reply.size);
    const u8 bits = isLong ? parity::longBits : parity::shortBits;
    benchmark::DoNotOptimize(parity::sum(frame, bits));
    benchmark::DoNotOptimize(isKnown(known, reply.address));
}

void road(benchmark::State& state, Kind kind) {
    const auto replies = makeStream(kind, static_cast<unsigned>(state.range(0)));
    ModeSDecoder decoder;
    ADSBTracker tracker;
    std::unordered_map<u32, std::int64_t> known;
    const auto hear = [&](const Heard& reply) {
        const Message message(
            decoder.decode(ModeSMessage::Downlink, reply.bytes.data(), reply.size, reply.timeMs));
        return tracker.procModeSMsg(message.get());
    };
    for (const Heard& reply : replies) {
        hear(reply);
        known.emplace(reply.address, 1);
    }
    compare(
        state, replies.size(), [&](std::size_t i) { benchmark::DoNotOptimize(hear(replies[i])); },
        [&](std::size_t i) { floorOf(replies[i], known); });
    state.counters["aircraft"] = static_cast<double>(tracker.allTargets().size());
}

void atSeveralSizes(benchmark::internal::Benchmark* registered) {
    registered->ArgName("aircraft")->UseManualTime()->Iterations(turns / 4);
    for (const int aircraft : {10, 200, 500, 2000, 4095}) {
        registered->Arg(aircraft);
    }
}

BENCHMARK_CAPTURE(road, Mixed, Kind::Mixed)->Apply(atSeveralSizes);
BENCHMARK_CAPTURE(road, Squitters, Kind::Squitters)->Apply(atSeveralSizes);
BENCHMARK_CAPTURE(road, Surveillance, Kind::Surveillance)->Apply(atSeveralSizes);
BENCHMARK_CAPTURE(road, Damaged, Kind::Damaged)->Apply(atSeveralSizes);

} // namespace
} // namespace tolvarin::ondrel::bench
