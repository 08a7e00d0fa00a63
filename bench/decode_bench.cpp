// Decoding of each downlink format, and of damaged squitters.

#include "compare.h"
#include "samples.h"

#include <array>
#include <cstddef>
#include <memory>
#include <random>
#include <set>
#include <string>

namespace tolvarin::ondrel::bench {
namespace {

const InTable formats({"decode", "Decoding of a good reply of one of 1000 known aircraft.",
                       "memory for one message, the parity of the frame, and one look-up of the "
                       "address in a std::unordered_map."});

/// `encode` makes the frame of an address.
template <class Format, class Encode>
void add(const char* name, Encode encode) {
    struct alignas(Format) Block {
        std::array<std::byte, sizeof(Format)> bytes; // not initialised
    };
    const auto measure = [=](benchmark::State& state) {
        const auto frames = framesOfAll(encode);
        ModeSDecoder decoder = experiencedDecoder();
        KnownAddresses known;
        for (const u32 address : addresses()) {
            known.emplace(address, 1);
        }
        if (decoded(decoder, frames.front())->icaoAddress() != addresses().front()) {
            state.SkipWithError("the frames are not those of the aircraft");
            return;
        }
        compare(
            state, order().size(),
            [&](std::size_t i) { benchmark::DoNotOptimize(decoded(decoder, frames[order()[i]])); },
            [&](std::size_t i) {
                const std::unique_ptr<Block> block(new Block);
                benchmark::DoNotOptimize(block.get());
                benchmark::DoNotOptimize(parityDifference(frames[order()[i]]));
                benchmark::DoNotOptimize(known.find(addresses()[order()[i]]) != known.end());
            });
    };
    inTurns(benchmark::RegisterBenchmark(name, measure));
}

[[maybe_unused]] const bool added = [] {
    constexpr int feet = 36000;
    constexpr unsigned squawk = 04721;
    add<DF0Message>("decode/DF0", [](u32 a) { return simulator::df0(a, {}); });
    add<DF4Message>("decode/DF4", [](u32 a) { return simulator::df4(a, {}, feet); });
    add<DF5Message>("decode/DF5", [](u32 a) { return simulator::df5(a, {}, squawk); });
    add<DF11Message>("decode/DF11", [](u32 a) { return simulator::df11(a, 5, 3); });
    add<DF16Message>("decode/DF16", [](u32 a) { return simulator::df16(a, {}, payload); });
    add<DF17Message>("decode/DF17", squitter);
    add<DF18Message>("decode/DF18", [](u32 a) { return simulator::df18(a, 0, payload); });
    add<DF19Message>("decode/DF19", [](u32 a) { return simulator::df19(a, 0, payload); });
    add<DF20Message>("decode/DF20", [](u32 a) { return simulator::df20(a, {}, feet, payload); });
    add<DF21Message>("decode/DF21", [](u32 a) { return simulator::df21(a, {}, squawk, payload); });
    return true;
}();

const InTable
    damage({"decodeDamaged",
            "Decoding of a squitter with one or two wrong bits, which is repaired, or with "
            "three or four, which is beyond repair.",
            "decoding of the same squitter undamaged."});

/// Each frame has its bits wrong at other places: the processor would learn a search that is always
/// the same.
void decodeDamaged(benchmark::State& state, unsigned wrongBits, bool repaired) {
    std::mt19937 random(wrongBits); // NOLINT(cert-msc51-cpp): every run measures the same
    ModeSDecoder decoder = experiencedDecoder();
    const auto good = framesOfAll(squitter);
    const auto bad = framesOfAll([&](u32 address) {
        std::string frame;
        do { // one frame in some hundred with four wrong bits looks like one with two
            frame = squitter(address);
            std::set<std::size_t> places; // between format and parity
            while (places.size() < wrongBits) {
                places.insert(5 + random() % (88 - 5));
            }
            for (const std::size_t place : places) {
                char& byte = frame[place / 8];
                byte = static_cast<char>(static_cast<u8>(byte) ^ (0x80U >> (place % 8)));
            }
        } while ((decoded(decoder, frame) != nullptr) != repaired);
        return frame;
    });
    compare(
        state, order().size(),
        [&](std::size_t i) { benchmark::DoNotOptimize(decoded(decoder, bad[order()[i]])); },
        [&](std::size_t i) { benchmark::DoNotOptimize(decoded(decoder, good[order()[i]])); });
}

BENCHMARK_CAPTURE(decodeDamaged, OneBit, 1, true)->Apply(inTurns);
BENCHMARK_CAPTURE(decodeDamaged, TwoBits, 2, true)->Apply(inTurns);
BENCHMARK_CAPTURE(decodeDamaged, BeyondRepairOdd, 3, false)->Apply(inTurns);
BENCHMARK_CAPTURE(decodeDamaged, BeyondRepairEven, 4, false)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
