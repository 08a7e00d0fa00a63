/// @file
/// What cannot be left out of the decoding of a reply.
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

/// Kept out of line, where the compiler makes of it what it makes of the decoder's own look-up.
/// Inlined into a loop that only measures, g++ replaces its branches by conditional moves, and a
/// look-up that no processor can foresee takes half the time.
[[gnu::noinline]] inline bool isKnown(const AddressTable& known, u32 address) {
    return known.find(address) != known.end();
}

/// One allocation of the message's size, the parity of the frame, and one look-up in an ordered
/// map.
template <class Message>
void decodeFloor(const std::string& frame, u8 frameBits, u32 address, const AddressTable& known) {
    struct alignas(Message) Block {
        std::array<std::byte, sizeof(Message)> bytes; // left as it comes
    };
    const std::unique_ptr<Block> block(new Block);
    benchmark::DoNotOptimize(block.get());
    benchmark::DoNotOptimize(parity::sum(frame, frameBits));
    benchmark::DoNotOptimize(isKnown(known, address));
}

} // namespace tolvarin::ondrel::bench
