// Tracking: a full table, and the memory of an aircraft.

#include "compare.h"
#include "floor.h"
#include "samples.h"

#include "simulator/payload_encoder.h"
#include "simulator/traffic.h"

#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

std::size_t bytesAllocated = 0; // since the program started

} // namespace

// Counts the bytes that are allocated, in the work and the floor of all benchmarks. Not inlined: a
// compiler that inlines one of a pair warns that new and delete do not match.
[[gnu::noinline]] void* operator new(std::size_t size) {
    bytesAllocated += size;
    if (void* block = std::malloc(size)) {
        return block;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace tolvarin::ondrel::bench {
namespace {

constexpr std::size_t frameBytes = 14;
constexpr u32 firstAddress = 0x400000;
constexpr u32 mostAircraft = 4095; // as many as there are track numbers
constexpr u64 startTime = 1700000000000;

u32 addressOf(u32 aircraft) {
    return firstAddress + 37 * aircraft;
}

struct Frame {
    std::array<char, frameBytes> bytes;
    u8 size;
};

// A full table

std::string altitudeReply(u32 address) {
    return simulator::df4(address, {}, 36000);
}

std::string positionSquitter(u32 address) {
    return simulator::df17(address, 5, simulator::airbornePosition({}));
}

/// Some of each kind, about as often as they are heard.
std::string mixedReply(u32 address) {
    switch (address % 7) {
    case 0:
        return altitudeReply(address);
    case 1:
        return simulator::df5(address, {}, 04721);
    case 2:
        return simulator::df11(address, 5, 0);
    case 3:
        return squitter(address);
    case 4:
        return simulator::df17(address, 5, simulator::groundVelocity({}, 300, 300, false));
    default:
        return positionSquitter(address);
    }
}

/// A decoder and a tracker that know this number of aircraft, and a reply of each.
class Sky {
public:
    Sky(u32 aircraft, std::string (*encode)(u32)) {
        for (u32 i = 0; i < aircraft; ++i) {
            const std::string known = squitter(addressOf(i));
            hear(known.data(), known.size());
            Frame& reply = _replies.emplace_back();
            const std::string bytes = encode(addressOf(i));
            reply.size = static_cast<u8>(bytes.copy(reply.bytes.data(), frameBytes));
        }
    }

    /// Takes the reply of an aircraft; `i` can be any number.
    void hear(std::size_t i) {
        const Frame& reply = _replies[i % _replies.size()];
        hear(reply.bytes.data(), reply.size);
    }

    std::size_t size() const { return _tracker.allTargets().size(); }

private:
    void hear(const char* bytes, std::size_t size) {
        const Message message(_decoder.decode(ModeSMessage::Downlink, bytes, size, startTime));
        benchmark::DoNotOptimize(_tracker.procModeSMsg(message.get()));
    }

    ModeSDecoder _decoder;
    ADSBTracker _tracker;
    std::vector<Frame> _replies; // compact, so that reading them takes little time
};

// NOLINTBEGIN(cert-msc51-cpp): every run measures the same

/// Which aircraft replies next, in an order that a processor cannot predict.
std::vector<std::uint16_t> makeTurns() {
    std::mt19937 random(3);
    std::vector<std::uint16_t> all(1U << 14);
    for (std::uint16_t& aircraft : all) {
        aircraft = static_cast<std::uint16_t>(random() % mostAircraft);
    }
    return all;
}

// NOLINTEND(cert-msc51-cpp)

/// One reply, decoded, tracked and deleted: with a full table, beside the same with ten aircraft.
void fullTable(benchmark::State& state, std::string (*encode)(u32)) {
    Sky full(mostAircraft, encode);
    Sky empty(10, encode);
    const std::vector<std::uint16_t> order = makeTurns();
    compare(
        state, order.size(), [&](std::size_t i) { full.hear(order[i]); },
        [&](std::size_t i) { empty.hear(order[i]); });
    state.counters["aircraft"] = static_cast<double>(full.size());
}

BENCHMARK_CAPTURE(fullTable, Mixed, mixedReply)
    ->Name("Track/FullTable/Mixed")
    ->UseManualTime()
    ->Iterations(turns);
BENCHMARK_CAPTURE(fullTable, DF4, altitudeReply)
    ->Name("Track/FullTable/DF4")
    ->UseManualTime()
    ->Iterations(turns);
BENCHMARK_CAPTURE(fullTable, DF17, positionSquitter)
    ->Name("Track/FullTable/DF17")
    ->UseManualTime()
    ->Iterations(turns);

/// A believed reply, ready to be tracked.
Message believed(u32 address, u64 stamp) {
    auto message = std::make_unique<DF4Message>();
    message->decode(altitudeReply(address));
    message->setConfidence(ModeSMessage::High);
    message->setTimeStamp(stamp);
    return message;
}

/// The worst case for a new aircraft: the table has one free place, so the search for a track
/// number looks at all targets and at all numbers.
void lastAircraft(benchmark::State& state) {
    ADSBTracker tracker;
    for (u32 i = 1; i < mostAircraft; ++i) {
        tracker.procModeSMsg(believed(addressOf(i), startTime).get());
    }
    const Message last = believed(addressOf(0), 1);
    std::vector<double> times;
    for (auto turn : state) {
        static_cast<void>(turn);
        auto enter = [&](std::size_t) { tracker.procModeSMsg(last.get()); };
        const double seconds = secondsPerItem(1, enter);
        state.SetIterationTime(seconds);
        times.push_back(seconds * 1e9);
        if (tracker.killTargets(1).size() != 1) {
            state.SkipWithError("the aircraft found no place");
        }
    }
    state.counters["ns"] = median(times);
}

BENCHMARK(lastAircraft)->Name("Track/LastAircraft")->UseManualTime()->Iterations(turns);

/// The bytes that a full table allocates for each aircraft, also those for the growing of the
/// table.
void memory(benchmark::State& state) {
    for (auto turn : state) {
        static_cast<void>(turn);
        ADSBTracker tracker;
        std::size_t bytes = 0;
        for (u32 i = 0; i < mostAircraft; ++i) {
            const Message message = believed(addressOf(i), startTime);
            const std::size_t before = bytesAllocated;
            tracker.procModeSMsg(message.get());
            bytes += bytesAllocated - before;
        }
        state.counters["bytes"] = static_cast<double>(bytes) / mostAircraft;
    }
}

BENCHMARK(memory)->Name("Track/MemoryOfOneAircraft")->Iterations(1);

} // namespace
} // namespace tolvarin::ondrel::bench
