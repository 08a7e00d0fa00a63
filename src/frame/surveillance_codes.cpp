#include "surveillance_codes.h"

#include <array>

namespace tolvarin::ondrel {

namespace {

constexpr i32 lowestAltitude = -1000;

constexpr u32 metresBit = 1U << 6;     // M, in the 13 bits
constexpr u32 resolutionBit = 1U << 4; // Q, in the 13 and in the 12 bits

/// The wire bits of the digits' bits, highest first; bit 26 between them carries nothing.
constexpr unsigned lastWireBit = 32;
constexpr std::array<u8, 12> identityWireBits = {
    25, 23, 21, // A4 A2 A1
    31, 29, 27, // B4 B2 B1
    24, 22, 20, // C4 C2 C1
    32, 30, 28, // D4 D2 D1
};

/// Closes the gap that the bit `gap` leaves when it is taken out of `code`.
constexpr u32 without(u32 gap, u32 code) {
    return (code & ~(2 * gap - 1)) >> 1 | (code & (gap - 1));
}

} // namespace

AltitudeCode altitudeCode(u32 code) {
    AltitudeCode result = squitterAltitudeCode(without(metresBit, code));
    result.unit = (code & metresBit) != 0 ? Metres : Feet;
    return result;
}

AltitudeCode squitterAltitudeCode(u32 code) {
    const AltitudeResolution resolution =
        (code & resolutionBit) != 0 ? Resolution25Ft : Resolution100Ft;
    const auto count = static_cast<i32>(without(resolutionBit, code) & 0x7FF);
    return {Feet, resolution, count * resolution + lowestAltitude};
}

u32 identityCode(u32 code) {
    u32 identity = 0;
    for (const unsigned wireBit : identityWireBits) {
        identity = identity << 1 | (code >> (lastWireBit - wireBit) & 1);
    }
    return identity;
}

} // namespace tolvarin::ondrel
