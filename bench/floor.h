/// @file
/// The least that the decoding of a reply needs.
#pragma once

#include <ondrel/types.h>

#include "parity.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace tolvarin::ondrel::bench {

using AddressTable = std::map<u32, std::int64_t>;

/// Not inlined, so that the compiler makes the same code as for the look-up of the decoder. Inlined
/// into the loop of a benchmark, g++ replaces the branches by conditional moves. Then a look-up
/// that the processor cannot predict takes half the time, and the floor would be too low.
[[gnu::noinline]] inline bool isKnown(const AddressTable& known, u32 address) {
    return known.find(address) != known.end();
}

/// One allocation of the message's size, the parity of the frame, and one look-up in an ordered
/// map.
template <class Message>
void decodeFloor(const std::string& frame, u8 frameBits, u32 address, const AddressTable& known) {
    struct alignas(Message) Block {
        std::array<std::byte, sizeof(Message)> bytes; // not initialised
    };
    const std::unique_ptr<Block> block(new Block);
    benchmark::DoNotOptimize(block.get());
    benchmark::DoNotOptimize(parity::sum(frame, frameBits));
    benchmark::DoNotOptimize(isKnown(known, address));
}

} // namespace tolvarin::ondrel::bench
