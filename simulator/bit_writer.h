/// @file
/// The bit writer for frames and payloads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tolvarin::ondrel::simulator {

/// A byte string that is filled field by field, with the positions and widths of the tables in the
/// standards. Position 0 is the bit that is sent first, the top bit of byte 0.
class BitWriter {
public:
    /// Starts with `bytes` bytes of zeros.
    explicit BitWriter(std::size_t bytes) : _bytes(bytes, '\0') {}

    /// Writes the low `width` bits of `value`, most significant first, from `position` on. Bits
    /// that fall behind the end are dropped; a width above 64 writes 64 bits.
    BitWriter& put(std::size_t position, unsigned width, std::uint64_t value) {
        for (unsigned i = width > 64 ? 64 : width; i-- > 0; ++position) {
            putBit(position, ((value >> i) & 1U) != 0);
        }
        return *this;
    }

    const std::string& bytes() const { return _bytes; }

private:
    void putBit(std::size_t position, bool on) {
        if (position / 8 >= _bytes.size()) {
            return;
        }
        const unsigned mask = 0x80U >> (position % 8);
        const unsigned old = static_cast<unsigned char>(_bytes[position / 8]);
        _bytes[position / 8] = static_cast<char>(on ? old | mask : old & ~mask);
    }

    std::string _bytes;
};

} // namespace tolvarin::ondrel::simulator
