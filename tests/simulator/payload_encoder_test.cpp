#include "simulator/payload_encoder.h"

#include "simulator/frame_encoder.h"
#include "wire.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

using namespace tolvarin::ondrel::simulator;

namespace {

AirbornePosition airborne(bool odd, double latitude, double longitude) {
    AirbornePosition position;
    position.altitudeFt = 38000;
    position.odd = odd;
    position.cpr = encodeCpr(latitude, longitude, odd, CprGrid::Airborne);
    return position;
}

SurfacePosition surface(bool odd, double latitude, double longitude, double speed, double track) {
    SurfacePosition position;
    position.groundSpeedKt = speed;
    position.trackDeg = track;
    position.odd = odd;
    position.cpr = encodeCpr(latitude, longitude, odd, CprGrid::Surface);
    return position;
}

VelocityFields velocity(bool ifr, bool sourceBit, int rate, std::optional<int> difference) {
    VelocityFields fields;
    fields.ifrCapability = ifr;
    fields.verticalRateSourceBit = sourceBit;
    fields.verticalRateFtMin = rate;
    fields.geometricMinusBaroFt = difference;
    return fields;
}

TargetState target() {
    TargetState state;
    state.accuracy = {9, 3, true, false};
    state.selectedAltitudeFt = 16992;
    state.selectedHeadingDeg = 66.8;
    state.pressureHpa = 1012.8;
    state.verticalNavigation = true;
    state.acasOperational = true;
    return state;
}

// Frames that aircraft sent and that the literature prints, with what it says they mean.
TEST(PayloadEncoder, BuildsPublishedFrames) {
    const struct {
        std::string frame;
        const char* published;
    } rows[] = {
        {df17(0x4840D6, 5, identification(4, 0, "KLM1023")), "8D4840D6202CC371C32CE0576098"},
        {df17(0x40621D, 5, airbornePosition(airborne(false, 52.2572, 3.91937))),
         "8D40621D58C382D690C8AC2863A7"},
        {df17(0x40621D, 5, airbornePosition(airborne(true, 52.26578, 3.938913))),
         "8D40621D58C386435CC412692AD6"},
        {df17(0x485020, 5, groundVelocity(velocity(true, false, -832, 550), -8, -159, false)),
         "8D485020994409940838175B284F"},
        {df17(0xA05F21, 5, airVelocity(velocity(false, true, -2304, {}), 243.98, 375, false)),
         "8DA05F219B06B6AF189400CBC33F"},
        {df17(0x484175, 4, surfacePosition(surface(true, 52.320607, 4.734735, 16, 98.4375))),
         "8C4841753A8A35323FAEBDAC702D"},
        {df17(0xA2C1B6, 5, emergencyStatus(0, 06513)), "8DA2C1B6E112B600000000760759"},
        {df17(0xA05629, 5, targetStateV2(target())), "8DA05629EA21485CBF3F8CADAEEB"},
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

TEST(PayloadEncoder, CallsignsKeepTheirCharacterSet) {
    EXPECT_EQ(wire::bits(identification(1, 7, "AZ 09a?"), 0, 56), 0x0F05A830E40020U);
    EXPECT_EQ(identification(4, 3, "ABCDEFGHIJ"), identification(4, 3, "ABCDEFGH"));
    EXPECT_EQ(identificationRegister("KLM1023").substr(1),
              identification(4, 0, "KLM1023").substr(1));
}

/// One field of a status message: its place, and its value where everything is set.
struct StatusField {
    const char* name;
    std::size_t position;
    std::size_t width;
    unsigned value;
};

void expectFields(const std::string& message, const std::vector<StatusField>& fields) {
    for (const StatusField& field : fields) {
        EXPECT_EQ(wire::field(message, field.position, field.width), field.value) << field.name;
    }
}

TEST(PayloadEncoder, StatusMessagesFollowTheirVersion) {
    OperationalStatus status;
    status.accuracy = {10, 2, true, true};
    status.nicSupplementA = true;
    status.nicSupplementC = true;
    status.nacv = 5;
    status.acasOperational = true;
    expectFields(operationalStatus(status), {{"type", 0, 8, 0xF8},
                                             {"ACAS", 10, 1, 1},
                                             {"version", 40, 3, 2},
                                             {"NIC supplement A", 43, 1, 1},
                                             {"NACp", 44, 4, 10},
                                             {"SIL", 50, 2, 2},
                                             {"NIC baro", 52, 1, 1},
                                             {"SIL supplement", 54, 1, 1}});
    status.version = 1;
    expectFields(operationalStatus(status),
                 {{"no ACAS", 10, 1, 0}, {"version", 40, 3, 1}, {"SIL supplement", 54, 1, 0}});
    status.onGround = true;
    status.version = 2;
    expectFields(operationalStatus(status), {{"type", 0, 8, 0xF9},
                                             {"NACv", 16, 3, 5},
                                             {"NIC supplement C", 19, 1, 1},
                                             {"track angle", 52, 1, 0}});

    EXPECT_EQ(wire::hex(emergencyStatus(5, {})), "E1A00000000000");
    EXPECT_EQ(wire::hex(testMessage(0, 0x0123456789AB)), "B80123456789AB");
    expectFields(advisoryStatus({0x2001, 0x9, 0x4840D6}), {{"type", 0, 8, 0xE2},
                                                           {"ARA", 8, 14, 0x2001},
                                                           {"RAC", 22, 4, 9},
                                                           {"threat type", 28, 2, 1},
                                                           {"threat", 30, 24, 0x4840D6}});
}

} // namespace
