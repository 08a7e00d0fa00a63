#include "simulator/payload_encoder.h"

#include "simulator/frame_encoder.h"
#include "wire.h"

#include <gtest/gtest.h>

#include <string>

using namespace tolvarin::ondrel::simulator;

namespace {

// Received frames from literature, with the values that it gives.
TEST(PayloadEncoder, BuildsPublishedFrames) {
    const CprFrame even = encodeCpr(52.2572, 3.91937, false, CprGrid::Airborne);
    const CprFrame odd = encodeCpr(52.26578, 3.938913, true, CprGrid::Airborne);
    const CprFrame onGround = encodeCpr(52.320607, 4.734735, true, CprGrid::Surface);
    const VelocityFields sinking = {false, true, 0, false, -832, 550};
    const VelocityFields sinkingFast = {false, false, 0, true, -2304, {}};
    const TargetState target = {{9, 3, true, false}, 16992, 66.8, 1012.8, true, true, 0};
    const struct {
        std::string frame;
        const char* published;
    } rows[] = {
        {df17(0x4840D6, 5, identification(4, 0, "KLM1023")), "8D4840D6202CC371C32CE0576098"},
        {df17(0x40621D, 5, airbornePosition({11, 0, false, 38000, false, even})),
         "8D40621D58C382D690C8AC2863A7"},
        {df17(0x40621D, 5, airbornePosition({11, 0, false, 38000, true, odd})),
         "8D40621D58C386435CC412692AD6"},
        {df17(0x485020, 5, groundVelocity(sinking, -8, -159, false)),
         "8D485020994409940838175B284F"},
        {df17(0xA05F21, 5, airVelocity(sinkingFast, 243.98, 375, false)),
         "8DA05F219B06B6AF189400CBC33F"},
        {df17(0x484175, 4, surfacePosition({7, 16, true, 98.4375, true, onGround})),
         "8C4841753A8A35323FAEBDAC702D"},
        {df17(0xA2C1B6, 5, emergencyStatus(0, 06513)), "8DA2C1B6E112B600000000760759"},
        {df17(0xA05629, 5, targetStateV2(target)), "8DA05629EA21485CBF3F8CADAEEB"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(wire::hex(row.frame), row.published);
    }
}

TEST(PayloadEncoder, MovementCodesStartAtTheirSpeeds) {
    const struct {
        double knots;
        unsigned code;
    } rows[] = {{-1, 1},     {0, 1},       {0.01, 2},   {0.125, 3}, {0.26, 3},
                {0.28, 4},   {0.99, 8},    {1, 9},      {1.99, 12}, {2, 13},
                {14.99, 38}, {15, 39},     {69.99, 93}, {70, 94},   {99.9, 108},
                {100, 109},  {174.9, 123}, {175, 124},  {1e9, 124}};
    for (const auto& row : rows) {
        EXPECT_EQ(movementCode(row.knots), row.code) << row.knots;
    }
}

TEST(PayloadEncoder, VelocitiesRoundAndStayInRange) {
    const struct {
        int knots;
        bool supersonic;
        unsigned sign;
        unsigned code;
    } rows[] = {{0, false, 0, 1},       {-1, false, 1, 2},     {1022, false, 0, 1023},
                {5000, false, 0, 1023}, {-1028, true, 1, 258}, {1029, true, 0, 258},
                {1030, true, 0, 259},   {4088, true, 0, 1023}, {-9999, true, 1, 1023}};
    for (const auto& row : rows) {
        const std::string east = groundVelocity({}, row.knots, 0, row.supersonic);
        const std::string north = groundVelocity({}, 0, row.knots, row.supersonic);
        EXPECT_EQ(wire::field(east, 5, 3), row.supersonic ? 2U : 1U);
        EXPECT_EQ(wire::field(east, 13, 11), row.sign << 10U | row.code) << row.knots;
        EXPECT_EQ(wire::field(north, 24, 11), row.sign << 10U | row.code) << row.knots;
        EXPECT_EQ(wire::field(east, 24, 11), 1U);
    }
    const std::string fast = airVelocity({}, 359.9, 1200, true);
    EXPECT_EQ(wire::field(fast, 5, 3), 4U);
    EXPECT_EQ(wire::field(fast, 14, 10), 0U) << "359.9 degrees round to north";
    EXPECT_EQ(wire::field(fast, 25, 10), 301U);
}

TEST(PayloadEncoder, CallsignsUseTheCharacterSet) {
    EXPECT_EQ(wire::bitsOf(identification(1, 7, "AZ 09a?"), 0, 56), 0x0F05A830E40020U);
    EXPECT_EQ(identification(4, 3, "ABCDEFGHIJ"), identification(4, 3, "ABCDEFGH"));
    EXPECT_EQ(identificationRegister("KLM1023").substr(1),
              identification(4, 0, "KLM1023").substr(1));
}

TEST(PayloadEncoder, StatusMessagesFollowTheirVersion) {
    OperationalStatus status;
    status.accuracy = {10, 2, true, true};
    status.nicSupplementA = true;
    status.nicSupplementC = true;
    status.nacv = 5;
    status.acasOperational = true;
    EXPECT_EQ(wire::hex(operationalStatus(status)), "F8230000005A2A");
    status.version = 1; // has a bit for "no ACAS", and no SIL supplement
    EXPECT_EQ(wire::hex(operationalStatus(status)), "F8030000003A28");
    status.onGround = true;
    status.version = 2;
    EXPECT_EQ(wire::hex(operationalStatus(status)), "F900B300005A22");

    EXPECT_EQ(wire::hex(emergencyStatus(5, {})), "E1A00000000000");
    EXPECT_EQ(wire::hex(testMessage(0, 0x0123456789AB)), "B80123456789AB");
    EXPECT_EQ(wire::hex(advisoryStatus({0x2001, 0x9, 0x4840D6})), "E2800645210358");
}

} // namespace
