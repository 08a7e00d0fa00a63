// The altitude and identity codes (ICAO Annex 10 Volume IV, 3.1.2.6.5.4 and 3.1.2.6.7.1). Replies
// and squitters have them at different places, so the functions take the bits of the code alone.

#include "surveillance_codes.h"

#include <array>

namespace tolvarin::ondrel {

namespace {

constexpr i32 lowestAltitude = -1000; // feet, at count 0

// M says metres. Q says steps of 25 feet; without it the steps are 100 feet.
constexpr u32 metresBit = 1U << 6;     // in the 13 bits
constexpr u32 resolutionBit = 1U << 4; // in the 13 and in the 12 bits

/// The wire bits of the four digits, each with the weights 4, 2 and 1. On the wire the digits are
/// interleaved: C1 A1 C2 A2 C4 A4 X B1 D1 B2 D2 B4 D4 are the frame bits 20 to 32, counted from 1.
/// The X bit (26) carries nothing.
constexpr unsigned lastWireBit = 32;
constexpr std::array<u8, 12> identityWireBits = {
    25, 23, 21, // A4 A2 A1
    31, 29, 27, // B4 B2 B1
    24, 22, 20, // C4 C2 C1
    32, 30, 28, // D4 D2 D1
};

/// Takes the bit `gap` out of `code` and moves the higher bits down by one.
constexpr u32 without(u32 gap, u32 code) {
    return (code & ~(2 * gap - 1)) >> 1 | (code & (gap - 1));
}

} // namespace

// The number does not depend on the M bit: the decoder gives no confidence to a reply in metres.
AltitudeCode altitudeCode(u32 code) {
    AltitudeCode result = squitterAltitudeCode(without(metresBit, code));
    result.unit = (code & metresBit) != 0 ? Metres : Feet;
    return result;
}

// With Q = 0 the standard has the Gillham code of Mode C. Here the 11 bits are a plain count of 100
// feet: one rule for both values of Q. The code 0 means "no altitude" in the standard; here it
// gives -1000 feet.
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
