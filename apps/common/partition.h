#pragma once

#include <ondrel/types.h>

#include <vector>

namespace tolvarin::ondrel::client {

/// So many parts at most can aircraft be divided into.
constexpr unsigned mostPartitions = 64;

/// Some of the parts.
struct Partitions {
    std::vector<unsigned> numbers{0}; ///< at least one
    unsigned count = 1;               ///< of all parts
};

/// The part to which all replies of an aircraft belong: the upper half of the low 32 bits of
/// 2654435761 times its address, modulo the number of parts. The factor, the golden ratio times
/// 2^32, spreads neighbouring addresses.
constexpr unsigned partitionOf(u32 address, unsigned partitions) {
    return (address * 2654435761U >> 16U) % partitions;
}

} // namespace tolvarin::ondrel::client
