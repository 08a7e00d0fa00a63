#include "surveillance_codes.h"

#include <gtest/gtest.h>

#include <array>

namespace tolvarin::ondrel {
namespace {

constexpr u32 allCodes = 1U << 13;

/// The two bytes of a frame that hold wire bits 17 to 32; the code is the last 13 of them.
struct Bytes2And3 {
    unsigned byte2;
    unsigned byte3;
    explicit Bytes2And3(u32 code) : byte2(code >> 8), byte3(code & 0xFF) {}
};

TEST(SurveillanceCodes, EveryAltitudeCodeIsAPlainCount) {
    for (u32 code = 0; code < allCodes; ++code) {
        const Bytes2And3 wire(code);
        const int count = static_cast<int>((wire.byte2 & 0x1F) << 6 | (wire.byte3 & 0x80) >> 2 |
                                           (wire.byte3 & 0x20) >> 1 | (wire.byte3 & 0x0F));
        const int step = (wire.byte3 & 0x10) != 0 ? 25 : 100;
        const AltitudeCode altitude = altitudeCode(code);
        ASSERT_EQ(altitude.feet, count * step - 1000) << code;
        ASSERT_EQ(altitude.resolution, step) << code;
        ASSERT_EQ(altitude.unit, (wire.byte3 & 0x40) != 0 ? Metres : Feet) << code;
    }
}

TEST(SurveillanceCodes, ASquitterAltitudeIsAnAltitudeCodeWithoutTheMetresBit) {
    for (u32 code = 0; code < allCodes; ++code) {
        const u32 squitterCode = (code & 0x1F80) >> 1 | (code & 0x3F);
        const AltitudeCode altitude = squitterAltitudeCode(squitterCode);
        ASSERT_EQ(altitude.feet, altitudeCode(code).feet) << code;
        ASSERT_EQ(altitude.resolution, altitudeCode(code).resolution) << code;
        ASSERT_EQ(altitude.unit, Feet) << code;
    }
}

TEST(SurveillanceCodes, EveryIdentityIsFourDigitsOfThreeScatteredBits) {
    struct Place {
        int byte;
        unsigned mask;
    };
    constexpr std::array<std::array<Place, 3>, 4> digits = {{
        {{{3, 0x80}, {2, 0x02}, {2, 0x08}}}, // A4 A2 A1
        {{{3, 0x02}, {3, 0x08}, {3, 0x20}}}, // B4 B2 B1
        {{{2, 0x01}, {2, 0x04}, {2, 0x10}}}, // C4 C2 C1
        {{{3, 0x01}, {3, 0x04}, {3, 0x10}}}, // D4 D2 D1
    }};
    for (u32 code = 0; code < allCodes; ++code) {
        const Bytes2And3 wire(code);
        unsigned identity = 0;
        for (const auto& digit : digits) {
            unsigned value = 0;
            for (const Place place : digit) {
                const unsigned byte = place.byte == 2 ? wire.byte2 : wire.byte3;
                value = 2 * value + ((byte & place.mask) != 0 ? 1 : 0);
            }
            identity = 8 * identity + value;
        }
        ASSERT_EQ(identityCode(code), identity) << code;
    }
}

} // namespace
} // namespace tolvarin::ondrel
