#include "simulator/frame_encoder.h"

#include "wire.h"

#include <gtest/gtest.h>

#include <string>

using namespace tolvarin::ondrel::simulator;

namespace {

const std::string identityMe = "\x20\x2C\xC3\x71\xC3\x2C\xE0";
const std::string commB("\x10\0\0\0\0\0\0", 7);

TEST(FrameEncoder, BuildsKnownFramesOfAllFormats) {
    AirAirFields ground;
    ground.onGround = true;
    ground.altitudeFt = 36000;
    SurveillanceFields plain;
    const struct {
        std::string frame;
        const char* expected;
    } rows[] = {
        {df0(0x4840D6, ground), "040017182DDDAE"},
        {df4(0x4840D6, plain, 36000), "20001718024EBD"},
        {df5(0x4840D6, plain, 07700), "28000AAA02E41F"},
        {df11(0x4840D6, 5, 0), "5D4840D6F8740F"},
        {df11(0x4840D6, 5, 3), "5D4840D6F8740C"},
        {df16(0x4840D6, ground, ""), "84001718000000000000008CC6F4"},
        {df17(0x4840D6, 5, identityMe), "8D4840D6202CC371C32CE0576098"},
        {df18(0x4840D6, 0, identityMe), "904840D6202CC371C32CE02A6C6D"},
        {df18(0x4840D6, 5, identityMe), "954840D6202CC371C32CE0EC2CFC"},
        {df19(0x4840D6, 0, identityMe), "984840D6202CC371C32CE0E9FBB6"},
        {df19(0x4840D6, 1, identityMe), "994840D6202CC371C32CE0B18ACE"},
        {df20(0x4840D6, plain, 36000, commB), "A000171810000000000000DB5340"},
        {df21(0x4840D6, plain, 07700, commB), "A8000AAA10000000000000B0652A"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(wire::hex(row.frame), row.expected);
    }
}

TEST(FrameEncoder, PutsEveryFieldInItsPlace) {
    const std::string surveillance = df21(0xFFFFFF, {5, 0x15, 0x2A}, 01234, "\x81");
    EXPECT_EQ(wire::field(surveillance, 5, 3), 5U);
    EXPECT_EQ(wire::field(surveillance, 8, 5), 0x15U);
    EXPECT_EQ(wire::field(surveillance, 13, 6), 0x2AU);
    EXPECT_EQ(wire::bits(surveillance, 32, 56), 0x81000000000000U);
    EXPECT_EQ(wire::field(surveillance, 88, 24) ^ parity(surveillance), 0xFFFFFFU);

    const std::string airAir = df0(1, {false, true, 6, 0xD, -1000});
    EXPECT_EQ(wire::bits(airAir, 0, 32), 0x02C68010U);
}

TEST(FrameEncoder, AltitudesRoundAndStayInRange) {
    for (int feet = -1000; feet <= 50175; feet += 25) {
        const unsigned field = altitudeField(feet);
        EXPECT_EQ(wire::altitude(field), feet);
        EXPECT_EQ(field & 0x50U, 0x10U) << "M clear, Q set";
    }
    const struct {
        int feet;
        int sent;
    } rows[] = {{37, 25}, {38, 50}, {-9999, -1000}, {60000, 50175}};
    for (const auto& row : rows) {
        EXPECT_EQ(wire::altitude(altitudeField(row.feet)), row.sent);
    }
}

TEST(FrameEncoder, SquawkDigitsInterleave) {
    const struct {
        unsigned squawk;
        unsigned field;
    } rows[] = {
        {00000, 0x0000}, {07777, 0x1FBF}, {01000, 0x0800}, {02000, 0x0200}, {04000, 0x0080},
        {00100, 0x0020}, {00200, 0x0008}, {00400, 0x0002}, {00010, 0x1000}, {00020, 0x0400},
        {00040, 0x0100}, {00001, 0x0010}, {00002, 0x0004}, {00004, 0x0001},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(identityField(row.squawk), row.field) << std::oct << row.squawk;
    }
}

} // namespace
