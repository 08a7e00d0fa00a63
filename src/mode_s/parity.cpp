// The parity table and the searches in it (ICAO Annex 10 Volume IV, 3.1.2.3.3: a cyclic redundancy
// check of 24 bits). All tables are made by the compiler, so the library starts without work.

#include "parity.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>

namespace tolvarin::ondrel::parity {

namespace {

using u16 = std::uint16_t;

constexpr u32 generator = 0x1FFF409; // of degree 24: 25 bits
constexpr u32 topBit = 1U << 24;
constexpr std::size_t parityBits = 24; // at the end of a frame
constexpr std::size_t protectedBits = longBits - parityBits;

/// Multiplies a remainder by x, and reduces the product by the generator.
constexpr u32 shifted(u32 remainder) {
    const u32 product = remainder << 1;
    return (product & topBit) != 0 ? product ^ generator : product;
}

/// Entry i is what bit i of a long frame adds to the parity: the remainder of x^(111 - i). The last
/// 24 entries are 0, since the parity field is no part of what it protects.
constexpr std::array<u32, longBits> makeEntries() {
    std::array<u32, longBits> entries{};
    u32 remainder = generator & (topBit - 1); // of x^24
    for (std::size_t i = protectedBits; i-- > 0;) {
        entries[i] = remainder;
        remainder = shifted(remainder);
    }
    return entries;
}

constexpr std::array<u32, longBits> entries = makeEntries();
// Checks the generator and the direction of the table.
static_assert(entries[0] == 0x3935EA && entries[1] == 0x1C9AF5 && entries[87] == 0xFFF409);

constexpr std::size_t protectedBytes = protectedBits / 8;

using ByteSums = std::array<std::array<u32, 256>, protectedBytes>;

/// What each byte at each place of a long frame adds to the parity: the sum of the entries of its
/// bits. A table for each place (11 of 256 entries) makes the look-ups independent: the processor
/// does several at a time. With the usual single table each look-up needs the result of the one
/// before.
constexpr ByteSums makeByteSums() {
    ByteSums sums{};
    for (std::size_t place = 0; place < protectedBytes; ++place) {
        for (std::size_t byte = 1; byte < 256; ++byte) {
            // The byte without its lowest bit is smaller, so its sum is already there.
            const std::size_t withoutLowestBit = byte & (byte - 1);
            std::size_t lowestBit = 7;
            while ((byte >> (7 - lowestBit) & 1) == 0) {
                --lowestBit;
            }
            sums[place][byte] = sums[place][withoutLowestBit] ^ entries[8 * place + lowestBit];
        }
    }
    return sums;
}

constexpr ByteSums byteSums = makeByteSums();

// The search for an entry is a look-up by its key: bits 6 to 17 of the entry, which differ between
// all entries that are not zero. Keys are linear, as the parity is: the key of a difference of two
// entries is the difference of their keys. So for each first bit of a pair, one exclusive-or and
// one look-up give the only candidate for the second bit. 4096 bytes of positions fit into the
// first-level cache.
constexpr u32 keyOf(u32 value) {
    return value >> 6 & 0xFFF;
}

/// Position by key. A key without an entry gives position 0, so the caller compares the entry.
constexpr std::array<u8, 0x1000> makePositions() {
    std::array<u8, 0x1000> positions{};
    // All entries that are not zero, and the first zero entry (88).
    for (std::size_t i = protectedBits + 1; i-- > 0;) {
        positions[keyOf(entries[i])] = static_cast<u8>(i);
    }
    return positions;
}

constexpr std::array<u16, longBits> makeKeys() {
    std::array<u16, longBits> keys{};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i] = static_cast<u16>(keyOf(entries[i]));
    }
    return keys;
}

constexpr std::array<u8, 0x1000> positions = makePositions();
constexpr std::array<u16, longBits> keys = makeKeys();

constexpr bool everyEntryIsFound() {
    for (std::size_t i = 0; i <= protectedBits; ++i) {
        if (positions[keys[i]] != i) {
            return false;
        }
    }
    return true;
}

static_assert(everyEntryIsFound());

/// The entry of a frame's first bit. A short frame uses the second half of the table: its last bit
/// has the same power of x as that of a long frame.
constexpr unsigned offset(u8 frameBits) {
    return frameBits == longBits ? 0 : longBits - shortBits;
}

/// The table position behind a frame's last bit. Messages of a client can have other lengths.
constexpr unsigned end(u8 frameBits) {
    return std::min<unsigned>(offset(frameBits) + frameBits, longBits);
}

/// The lowest table position from `first` on whose entry is `value`; longBits when there is none.
unsigned findEntry(unsigned first, u32 value) {
    if (value == 0) { // the entry of every bit of the parity field
        return std::max<unsigned>(first, protectedBits);
    }
    const unsigned position = positions[keyOf(value)];
    return position >= first && entries[position] == value ? position : longBits;
}

/// Table positions; the second is longBits or more when there is no such pair.
using EntryPair = std::pair<unsigned, unsigned>;

/// Whether a pair that explains `difference` must contain a bit of the parity field, whose entry is
/// zero. The generator has the factor x + 1, so each entry that is not zero has an odd number of
/// ones. Two of these together have an even number of ones. So an odd difference is one entry and a
/// zero entry, and a difference of 0 is two zero entries.
bool pairsWithZeroEntry(u32 difference) {
    return difference == 0 || std::bitset<parityBits>(difference).count() % 2 != 0;
}

/// The second bit is the lowest bit of the parity field that is behind the first bit.
EntryPair findPairWithZeroEntry(unsigned start, u32 difference) {
    const unsigned first = findEntry(start, difference);
    return {first, std::max<unsigned>(first + 1, protectedBits)};
}

/// At most 88 steps, where trying all pairs takes 6216 sums over the frame.
EntryPair findPairOfEntries(unsigned start, u32 difference) {
    const u32 differenceKey = keyOf(difference);
    for (unsigned first = start; first < protectedBits; ++first) {
        const unsigned second = positions[differenceKey ^ keys[first]];
        if (second > first && entries[second] == (difference ^ entries[first])) {
            return {first, second};
        }
    }
    return {longBits, longBits};
}

} // namespace

u32 sum(std::string_view frame, u8 frameBits) {
    const std::size_t firstPlace = offset(frameBits) / 8;
    const std::size_t frameBytes = std::min<std::size_t>(frameBits / 8U, frame.size());
    const std::size_t bytes = std::min(protectedBytes - firstPlace, frameBytes);
    u32 sum = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        sum ^= byteSums[firstPlace + i][static_cast<u8>(frame[i])];
    }
    return sum;
}

void invert(std::string& frame, u8 position) {
    char& byte = frame[position / 8U];
    byte = static_cast<char>(static_cast<u8>(byte) ^ 1U << (7 - position % 8));
}

std::optional<u8> findBit(u8 frameBits, u32 difference) {
    const unsigned start = offset(frameBits);
    const unsigned position = findEntry(start, difference);
    if (position >= end(frameBits)) {
        return std::nullopt;
    }
    return static_cast<u8>(position - start);
}

std::optional<std::pair<u8, u8>> findBitPair(u8 frameBits, u32 difference) {
    const unsigned start = offset(frameBits);
    const auto [first, second] = pairsWithZeroEntry(difference)
                                     ? findPairWithZeroEntry(start, difference)
                                     : findPairOfEntries(start, difference);
    if (second >= end(frameBits)) {
        return std::nullopt;
    }
    return std::pair{static_cast<u8>(first - start), static_cast<u8>(second - start)};
}

} // namespace tolvarin::ondrel::parity
