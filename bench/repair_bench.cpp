// Decoding of damaged squitters: repaired, and beyond repair.

#include "parity.h"

#include "compare.h"
#include "samples.h"

#include <ondrel/df_messages.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <random>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
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

/// The frame with `count` wrong bits at random places between its format and its parity.
std::string damaged(std::mt19937& random, std::string frame, unsigned count) {
    std::set<std::size_t> places;
    while (places.size() < count) {
        places.insert(5 + random() % (88 - 5));
    }
    for (const std::size_t place : places) {
        frame = inverted(std::move(frame), {place});
    }
    return frame;
}

/// Decoding of damaged squitters beside the decoding of the same squitters undamaged. Each frame
/// has its bits wrong at other places: the processor would learn a search that is always the same.
void decodeDamaged(benchmark::State& state, unsigned wrongBits, bool repaired) {
    std::mt19937 random(wrongBits); // NOLINT(cert-msc51-cpp): every run measures the same
    ModeSDecoder decoder = experiencedDecoder();
    const auto good = framesOfAll(squitter);
    const auto bad = framesOfAll([&](u32 address) {
        std::string frame;
        do { // one frame in some hundred with four wrong bits looks like one with two
            frame = damaged(random, squitter(address), wrongBits);
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

/// The search for two wrong bits, beside the same in a hash table of the standard library. Most
/// differences of noise are beyond repair.
void pairSearch(benchmark::State& state) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): every run measures the same
    std::vector<u32> differences(order().size());
    for (u32& difference : differences) {
        difference = static_cast<u32>(random()) & 0xFFFFFF;
    }
    std::unordered_map<u32, std::pair<u8, u8>> pairs;
    for (u8 first = 0; first < parity::longBits; ++first) {
        for (u8 second = first + 1; second < parity::longBits; ++second) {
            const std::string wrong = inverted(std::string(14, '\0'), {first, second});
            pairs.try_emplace(parity::sum(wrong, parity::longBits), first, second);
        }
    }
    compare(
        state, differences.size(),
        [&](std::size_t i) {
            benchmark::DoNotOptimize(parity::findBitPair(parity::longBits, differences[i]));
        },
        [&](std::size_t i) { benchmark::DoNotOptimize(pairs.find(differences[i])); });
}

BENCHMARK(pairSearch)->Apply(inTurns);

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
