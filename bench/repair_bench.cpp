// Decoding of damaged squitters: repaired, and beyond repair.

#include "compare.h"
#include "samples.h"

#include <ondrel/df_messages.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

std::string inverted(std::string frame, std::initializer_list<std::size_t> positions) {
    for (const std::size_t position : positions) {
        frame[position / 8] =
            static_cast<char>(static_cast<u8>(frame[position / 8]) ^ (0x80U >> (position % 8)));
    }
    return frame;
}

using Positions = std::initializer_list<std::size_t>;

/// Decoding of damaged squitters beside the decoding of the same squitters undamaged.
void decodeDamaged(benchmark::State& state, Positions damage, bool repaired) {
    const auto good = framesOfAll(squitter);
    const auto damaged =
        framesOfAll([damage](u32 address) { return inverted(squitter(address), damage); });
    ModeSDecoder decoder = experiencedDecoder();
    if ((decoded(decoder, damaged.front()) != nullptr) != repaired) {
        state.SkipWithError("the damage is not what the name says");
        return;
    }
    compare(
        state, order().size(),
        [&](std::size_t i) { benchmark::DoNotOptimize(decoded(decoder, damaged[order()[i]])); },
        [&](std::size_t i) { benchmark::DoNotOptimize(decoded(decoder, good[order()[i]])); });
}

// The search differs for odd and even numbers of ones in the difference, as in parity.cpp. Three
// bits give an odd number like one bit, four give an even number like two.
BENCHMARK_CAPTURE(decodeDamaged, OneBit, {40}, true)->Apply(inTurns);
BENCHMARK_CAPTURE(decodeDamaged, TwoBits, {40, 70}, true)->Apply(inTurns);
BENCHMARK_CAPTURE(decodeDamaged, BeyondRepairOdd, {40, 55, 70}, false)->Apply(inTurns);
BENCHMARK_CAPTURE(decodeDamaged, BeyondRepairEven, {40, 50, 60, 70}, false)->Apply(inTurns);

/// The plain repair: a copy of the frame for each candidate, and a loop over its bits. It shows
/// what the tables of the library save.
class PlainSearch {
public:
    PlainSearch() {
        u32 remainder = generator;
        for (std::size_t i = protectedBits; i-- > 0;) {
            _entries.at(i) = remainder;
            remainder <<= 1;
            remainder ^= (remainder >> 24) * (0x1000000 | generator);
        }
    }

    bool repair(std::string& frame, u32 wanted) const {
        for (std::size_t i = 0; i < frameBits; ++i) {
            if (fits(frame, {i}, wanted)) {
                return true;
            }
        }
        for (std::size_t i = 0; i < frameBits; ++i) {
            for (std::size_t j = i + 1; j < frameBits; ++j) {
                if (fits(frame, {i, j}, wanted)) {
                    return true;
                }
            }
        }
        return false;
    }

private:
    static constexpr std::size_t frameBits = 112;
    static constexpr std::size_t protectedBits = 88;
    static constexpr u32 generator = 0xFFF409; // without its highest bit

    u32 parity(const std::string& frame) const {
        u32 sum = 0;
        for (std::size_t i = 0; i < frameBits; ++i) {
            if ((static_cast<u8>(frame[i / 8]) & (0x80U >> (i % 8))) != 0) {
                sum ^= _entries[i];
            }
        }
        return sum;
    }

    bool fits(std::string& frame, Positions positions, u32 wanted) const {
        std::string copy = inverted(frame, positions);
        if (parity(copy) != wanted) {
            return false;
        }
        frame = std::move(copy);
        return true;
    }

    std::array<u32, frameBits> _entries{};
};

/// The plain search for a frame that cannot be repaired, beside the decoding of a good frame.
void plainSearch(benchmark::State& state) {
    const auto good = framesOfAll(squitter);
    ModeSDecoder decoder = experiencedDecoder();
    const PlainSearch search;
    DF17Message received;
    received.decode(good.front());
    const std::string damaged = inverted(good.front(), {40, 50, 60, 70});
    compare(
        state, 1,
        [&](std::size_t) {
            std::string frame = damaged;
            benchmark::DoNotOptimize(search.repair(frame, received.calculatedParity()));
        },
        good.size(),
        [&](std::size_t i) { benchmark::DoNotOptimize(decoded(decoder, good[order()[i]])); });
}

BENCHMARK(plainSearch)->UseManualTime()->Iterations(20);

} // namespace
} // namespace tolvarin::ondrel::bench
