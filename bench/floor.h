/// @file
/// Parts of the floors. They use nothing of the library, so a floor does not change with it.
#pragma once

#include <ondrel/types.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace tolvarin::ondrel::bench {

constexpr std::size_t longBytes = 14; // of a frame

/// What each byte adds to the parity (ICAO Annex 10 Volume IV, 3.1.2.3.3), by its distance from the
/// parity field and by its value. One look-up for each byte, none of which waits for another.
using ParityTable = std::array<std::array<u32, 256>, longBytes - 3>;

constexpr ParityTable makeParityTable() {
    ParityTable table{};
    for (u32 byte = 0; byte < 256; ++byte) {
        u32 remainder = byte << 16;
        for (auto& column : table) {
            for (int bit = 0; bit < 8; ++bit) {
                remainder = remainder << 1 ^ ((remainder & 0x800000) != 0 ? 0x1FFF409 : 0);
            }
            column[byte] = remainder;
        }
    }
    return table;
}

inline constexpr ParityTable parityTable = makeParityTable();

/// Three bytes as a number.
inline u32 threeBytes(std::string_view bytes) {
    return u32{static_cast<u8>(bytes[0])} << 16 | u32{static_cast<u8>(bytes[1])} << 8 |
           static_cast<u8>(bytes[2]);
}

/// The calculated parity and the received one, exclusive-or: 0, or an overlay.
inline u32 parityDifference(std::string_view frame) {
    const std::size_t size = frame.size() - 3;
    u32 sum = threeBytes(frame.substr(size));
    for (std::size_t i = 0; i < size; ++i) {
        sum ^= parityTable[size - 1 - i][static_cast<u8>(frame[i])];
    }
    return sum;
}

using KnownAddresses = std::unordered_map<u32, std::int64_t>;

/// A payload of seven bytes as one number; bit 0 is the first on the wire.
class PayloadBits {
public:
    explicit PayloadBits(std::string_view bytes) {
        for (std::size_t i = 0; i < 7; ++i) {
            _bits = _bits << 8 | static_cast<u8>(bytes[i]);
        }
    }
    u32 read(unsigned position, unsigned width) const {
        return static_cast<u32>(_bits >> (56 - position - width) & ((u64{1} << width) - 1));
    }

private:
    u64 _bits = 0;
};

/// Feet, of the 12 bits of a squitter, or the 13 bits of a reply without their M bit.
inline i32 altitudeFeet(u32 code) {
    const auto count = static_cast<i32>((code & 0xFE0) >> 1 | (code & 0xF));
    return count * ((code & 0x10) != 0 ? 25 : 100) - 1000;
}

/// The Mode A code of the 13 bits C1 A1 C2 A2 C4 A4 X B1 D1 B2 D2 B4 D4.
inline u32 modeACode(u32 code) {
    u32 identity = 0;
    for (const unsigned bit : {7U, 9U, 11U, 1U, 3U, 5U, 8U, 10U, 12U, 0U, 2U, 4U}) {
        identity = identity << 1 | (code >> bit & 1);
    }
    return identity;
}

inline std::array<char, 8> callsignOf(PayloadBits bits) {
    constexpr std::string_view characters =
        "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????";
    std::array<char, 8> callsign{};
    for (unsigned i = 0; i < callsign.size(); ++i) {
        callsign[i] = characters[bits.read(8 + 6 * i, 6)];
    }
    return callsign;
}

struct Velocity {
    double groundSpeed = 0;
    double heading = 0;
    i32 verticalRate = 0;
};

/// Of subtype 1, or 2, whose steps are 4 knots. Code 0 counts as no speed.
inline Velocity velocityOf(PayloadBits bits) {
    const auto steps = [&](unsigned position, unsigned width) {
        const u32 code = bits.read(position + 1, width);
        const i32 count = static_cast<i32>(code) - (code != 0 ? 1 : 0);
        return bits.read(position, 1) != 0 ? -count : count;
    };
    const i32 scale = bits.read(5, 3) == 2 ? 4 : 1;
    const double east = steps(13, 10) * scale;
    const double north = steps(24, 10) * scale;
    const double heading = std::atan2(east, north) * (180 / 3.14159265358979324);
    return {std::sqrt(east * east + north * north), heading < 0 ? heading + 360 : heading,
            steps(36, 9) * 64};
}

} // namespace tolvarin::ondrel::bench
