#include "surveillance_codes.h"

#include "simulator/frame_encoder.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel {
namespace {

constexpr u32 allCodes = 1U << 13;

TEST(SurveillanceCodes, EveryAltitudeCodeIsACountOfItsSteps) {
    for (u32 code = 0; code < allCodes; ++code) {
        // C1 A1 C2 A2 C4 A4 M B1 Q B2 D2 B4 D4 without M and Q.
        const u32 count = (code & 0x1F80) >> 2 | (code & 0x20) >> 1 | (code & 0xF);
        const int step = (code & 0x10) != 0 ? 25 : 100;
        const AltitudeCode altitude = altitudeCode(code);
        ASSERT_EQ(altitude.feet, static_cast<int>(count) * step - 1000) << code;
        ASSERT_EQ(altitude.resolution, step) << code;
        ASSERT_EQ(altitude.unit, (code & 0x40) != 0 ? Metres : Feet) << code;
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

TEST(SurveillanceCodes, EveryIdentityIsTheOneSentWhateverTheXBit) {
    constexpr u32 xBit = 0x40;
    for (u32 identity = 0; identity < 4096; ++identity) {
        const u32 code = simulator::identityField(identity);
        ASSERT_EQ(identityCode(code), identity);
        ASSERT_EQ(identityCode(code | xBit), identity);
    }
    EXPECT_EQ(identityCode(0x0AAA), 07700U);
}

} // namespace
} // namespace tolvarin::ondrel
