#include "simulator/transponder.h"

#include "simulator/frame_encoder.h"

#include "crowd.h"
#include "wire.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>

using namespace tolvarin::ondrel::simulator;

namespace {

/// A field in the frames of a kind and the value that it must have. A kind that starts with a slash
/// stands for the type code in squitters of all formats.
struct Claim {
    const char* kind;
    unsigned position;
    unsigned width;
    unsigned (*truth)(const AircraftState&);
};
const Claim claims[] = {
    {"DF4", 5, 3, flightStatus},
    {"DF5", 5, 3, flightStatus},
    {"DF20", 5, 3, flightStatus},
    {"DF21", 5, 3, flightStatus},
    {"DF11", 5, 3, capability},
    {"DF0", 19, 13, [](const AircraftState& s) { return altitudeField(s.altitudeFt); }},
    {"DF16", 19, 13, [](const AircraftState& s) { return altitudeField(s.altitudeFt); }},
    {"/11", 39, 1,
     [](const AircraftState& s) {
         return s.mopsVersion == 2 && s.quality.nicSupplementB ? 1U : 0U;
     }},
    {"/19.1", 42, 3, [](const AircraftState& s) { return s.quality.velocityAccuracy; }},
    {"/19.1", 67, 1, [](const AircraftState& s) { return s.verticalRateSourceBit ? 1U : 0U; }},
    {"/28.1", 40, 3, [](const AircraftState& s) { return static_cast<unsigned>(s.emergency); }},
    {"/28.1", 43, 13,
     [](const AircraftState& s) { return s.mopsVersion == 2 ? identityField(s.squawk) : 0U; }},
    {"/29", 37, 2, [](const AircraftState& s) { return s.mopsVersion - 1; }},
    {"/31", 75, 1, [](const AircraftState& s) { return s.quality.nicSupplementA ? 1U : 0U; }},
};

void expectPosition(const std::string& me, const AircraftState& truth) {
    const wire::Place near = {truth.latitude + 0.1, truth.longitude - 0.1};
    const bool odd = wire::field(me, 21, 1) != 0;
    const wire::Place place = wire::decode(wire::field(me, 22, 17), wire::field(me, 39, 17), odd,
                                           truth.onGround ? 90 : 360, near);
    EXPECT_NEAR(place.latitude, truth.latitude, 2.4e-5);
    EXPECT_NEAR(place.longitude, truth.longitude, 5e-5);
    EXPECT_EQ(wire::field(me, 0, 5) < 9, truth.onGround);
    if (!truth.onGround) {
        EXPECT_EQ(wire::field(me, 0, 5) >= 20, truth.sendsGnssHeight);
        const bool urgent = truth.emergency != Emergency::None;
        EXPECT_EQ(wire::field(me, 5, 2), urgent ? 1U : (truth.alert ? 2U : (truth.spi ? 3U : 0U)));
    }
}

void expectVelocity(const std::string& me, const AircraftState& truth) {
    EXPECT_FALSE(truth.onGround);
    EXPECT_EQ(wire::field(me, 5, 3),
              (truth.sendsAirSpeed ? 3U : 1U) + (truth.supersonic ? 1U : 0U));
    EXPECT_EQ(64 * wire::signedValue(me, 36, 9), truth.verticalRateFtMin);
}

// Reads the fields back by the standards' tables.
TEST(Transponder, FramesHaveTheValuesOfTheAircraft) {
    for (const Reply& reply : crowd()) {
        const std::string kind = kindOf(reply.sent);
        const std::string payload = kind.substr(std::min(kind.find('/'), kind.size()));
        for (const Claim& claim : claims) {
            if (claim.kind == kind || claim.kind == payload) {
                ASSERT_EQ(wire::field(reply.sent, claim.position, claim.width),
                          claim.truth(reply.truth))
                    << kind << " at " << claim.position;
            }
        }
        const unsigned typeCode = payload.empty() ? 0 : wire::field(reply.sent, 32, 5);
        if (typeCode >= 1 && typeCode <= 4) {
            const auto& truth = reply.truth;
            ASSERT_EQ(wire::me(reply.sent), identification(truth.identificationTypeCode,
                                                           truth.emitterCategory, truth.callsign));
        } else if (typeCode == 19) {
            expectVelocity(wire::me(reply.sent), reply.truth);
        } else if (typeCode >= 5 && typeCode <= 22) {
            expectPosition(wire::me(reply.sent), reply.truth);
        }
        ASSERT_FALSE(HasFailure()) << kind;
    }
}

TEST(Transponder, FramesCarryTheirAddress) {
    for (const Reply& reply : crowd()) {
        const std::string kind = kindOf(reply.sent);
        const unsigned end = static_cast<unsigned>(8 * reply.sent.size()) - 24;
        const unsigned overlay = wire::field(reply.sent, end, 24) ^ parity(reply.sent);
        const bool squitter = kind.find('/') != std::string::npos;
        if (squitter || kind == "DF11") {
            ASSERT_EQ(wire::field(reply.sent, 8, 24), reply.truth.address) << kind;
            ASSERT_LT(overlay, squitter ? 1U : 80U) << kind;
        } else if (kind != "DF19 AF") {
            ASSERT_EQ(overlay, reply.truth.address) << kind;
        }
    }
}

TEST(Transponder, FlightStatusFollowsTheTruth) {
    AircraftState state;
    const struct {
        bool onGround;
        bool alert;
        bool spi;
        unsigned status;
        unsigned capability;
    } rows[] = {{false, false, false, 0, 5}, {true, false, false, 1, 4}, {false, true, false, 2, 7},
                {true, true, false, 3, 7},   {false, true, true, 4, 7},  {true, false, true, 5, 7}};
    for (const auto& row : rows) {
        state.onGround = row.onGround;
        state.alert = row.alert;
        state.spi = row.spi;
        EXPECT_EQ(flightStatus(state), row.status);
        EXPECT_EQ(capability(state), row.capability);
        EXPECT_EQ(wire::field(airAirReply(state, true), 5, 1), row.onGround ? 1U : 0U);
    }
}

} // namespace
