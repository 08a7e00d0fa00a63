// The values of payloads: those that the simulator sends, every code by the formulas of the
// standard, and the values that the next payload leaves.
#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>

#include "simulator/payload_encoder.h"
#include "simulator/random.h"
#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/same_number.h"
#include "unexported_messages.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

namespace tolvarin::ondrel {
namespace {

using simulator::CprFrame;
using test::with;
using Status = ADSBAircraftStatusMessage;
using test::operator""_hex;

template <class Message>
Message decoded(const std::string& payload) {
    Message message;
    EXPECT_TRUE(message.decode(payload)) << message.dataHexString();
    return message;
}

std::string valueOf(const ADSBMessage& message, ADSBMessageField::Designator designator) {
    for (const ADSBMessageField& field : message.fields()) {
        if (field.designator() == designator) {
            return field.description();
        }
    }
    return "none";
}

CprFrame anyCpr(simulator::Random& random) {
    return {static_cast<u32>(random.bits() & 0x1FFFF), static_cast<u32>(random.bits() & 0x1FFFF)};
}

template <class Message>
void expectCpr(const Message& message, const CprFrame& cpr, bool odd) {
    EXPECT_EQ(message.cprFormat(), odd ? Odd : Even);
    EXPECT_EQ(message.cprLatitude(), static_cast<i32>(cpr.latitude));
    EXPECT_EQ(message.cprLongitude(), static_cast<i32>(cpr.longitude));
}

TEST(ADSBPayloadValues, ACallsignHasEightCharactersOfTheCharacterSet) {
    for (u8 code = 0; code < 64; ++code) {
        const bool letter = code >= 1 && code <= 26;
        const bool asInAscii = code == 32 || (code >= 48 && code <= 57);
        const char character = static_cast<char>(letter ? 'A' + code - 1 : asInAscii ? code : '?');
        for (unsigned place = 0; place < 8; ++place) {
            const std::string blanks = simulator::identification(1 + code % 4, code % 8, "");
            const std::string payload = with(blanks, 8 + 6 * place, 6, code);
            const auto message = decoded<ADSBIdentityMessage>(payload);
            std::string callsign(8, ' ');
            callsign.at(place) = character;
            EXPECT_EQ(message.callsign(), callsign);
            EXPECT_EQ(message.emitterCategory(), code % 8);
            EXPECT_EQ(message.fields().at(3 + place).description(), std::string(1, character));
        }
    }
}

/// The ranges of movement codes (RTCA DO-260B, table 2-20): within one, speeds rise in equal steps.
TEST(ADSBPayloadValues, EveryMovementCodeHasItsSpeed) {
    const struct {
        u8 first;
        u8 last;
        double firstSpeed; // knots
        double step;
    } ranges[] = {
        {0, 1, 0, 0},       {2, 2, 0.125, 0},   {3, 8, 0.125, 0.14583332}, {9, 12, 1, 0.25},
        {13, 38, 2, 0.5},   {39, 93, 15, 1},    {94, 108, 70, 2},          {109, 123, 100, 5},
        {124, 124, 175, 0}, {125, 127, 0, 0.0},
    };
    test::CapturedLog log;
    for (const auto& [first, last, firstSpeed, step] : ranges) {
        for (unsigned code = first; code <= last; ++code) {
            const auto message = decoded<ADSBSurfacePositionMessage>(
                with(simulator::surfacePosition({}), 5, 7, code));
            const double speed = firstSpeed + (code - first) * step;
            EXPECT_EQ(message.movementCode(), code);
            EXPECT_EQ(message.movement(), code >= 1 && code <= 124);
            EXPECT_EQ(message.groundSpeed(), speed) << code;
            EXPECT_EQ(valueOf(message, ADSBMessageField::GND_SPD), std::to_string(speed));
        }
    }
    EXPECT_EQ(log.take(), (test::Lines{"[CRITICAL][ADSBGndPosMsg] Reserved Movement Code: 125.",
                                       "[CRITICAL][ADSBGndPosMsg] Reserved Movement Code: 126.",
                                       "[CRITICAL][ADSBGndPosMsg] Reserved Movement Code: 127."}));
}

TEST(ADSBPayloadValues, SurfacePositionsAreThoseSent) {
    simulator::Random random(1);
    for (unsigned i = 0; i < 512; ++i) {
        const double heading = i % 128 * 2.8125;
        const bool known = i % 3 != 0;
        const CprFrame cpr = anyCpr(random);
        const std::string payload =
            simulator::surfacePosition({5 + i % 4, i / 4.0, known, heading, i % 2 != 0, cpr});
        const auto message = decoded<ADSBSurfacePositionMessage>(payload);
        EXPECT_EQ(message.movementCode(), simulator::movementCode(i / 4.0));
        EXPECT_EQ(message.headingValid(), known);
        EXPECT_EQ(message.heading(), known ? heading : 0);
        EXPECT_FALSE(message.timeApplicability());
        expectCpr(message, cpr, i % 2 != 0);
        const auto timed = decoded<ADSBSurfacePositionMessage>(test::inverted(payload, {20}));
        EXPECT_TRUE(timed.timeApplicability());
    }
    const std::string unknown = with(simulator::surfacePosition({}), 12, 8, 0x7F);
    EXPECT_EQ(decoded<ADSBSurfacePositionMessage>(unknown).heading(), 0) << "status bit 0";
}

TEST(ADSBPayloadValues, AirbornePositionsAreThoseSent) {
    constexpr std::array<unsigned, 13> typeCodes = {9,  10, 11, 12, 13, 14, 15,
                                                    16, 17, 18, 20, 21, 22};
    simulator::Random random(2);
    for (int feet = -1000; feet <= 50175; feet += 25) {
        const unsigned typeCode = random.oneOf(typeCodes);
        const bool supplement = random.chance(0.5);
        const bool odd = random.chance(0.5);
        const CprFrame cpr = anyCpr(random);
        const std::string payload =
            simulator::airbornePosition({typeCode, 0, supplement, feet, odd, cpr});
        const auto message = decoded<ADSBAirbornePositionMessageV0>(payload);
        EXPECT_EQ(message.altitudeSource(), typeCode < 19 ? Baro : Gnss);
        EXPECT_EQ(message.altitude(), feet);
        EXPECT_EQ(message.altResolution(), Resolution25Ft);
        EXPECT_FALSE(message.timeApplicability());
        expectCpr(message, cpr, odd);
        EXPECT_EQ(message.singalAntena(), supplement);
        EXPECT_EQ(decoded<ADSBAirbornePositionMessageV1>(payload).singalAntena(), supplement);
        EXPECT_EQ(decoded<ADSBAirbornePositionMessageV2>(payload).nicSupplementB(), supplement);
    }
    const auto coarse = decoded<ADSBAirbornePositionMessageV2>("A0 82 08 00 00 00 00"_hex);
    EXPECT_EQ(coarse.altResolution(), Resolution100Ft);
    EXPECT_TRUE(coarse.timeApplicability());
}

/// Clockwise from north, 0 to below 360.
double degrees(int east, int north) {
    const double heading = std::atan2(east, north) * 360.0 / 6.283185307179586;
    return heading < 0 ? heading + 360.0 : heading;
}

TEST(ADSBPayloadValues, GroundSpeedsAndHeadingsAreThoseOfBothComponents) {
    const auto check = [](int east, int north) {
        for (const int scale : {1, 4}) {
            const int e = east * scale;
            const int n = north * scale;
            const auto message = decoded<ADSBAirborneVelocityMessageV1>(
                simulator::groundVelocity({}, e, n, scale == 4));
            ASSERT_EQ(message.velocityType(), scale == 4 ? 2 : 1);
            ASSERT_PRED2(test::sameNumber, message.groundSpeed(), std::sqrt(e * e + n * n))
                << e << ' ' << n;
            ASSERT_PRED2(test::sameNumber, message.heading(), degrees(e, n)) << e << ' ' << n;
        }
    };
    for (int one = -1022; one <= 1022; ++one) {
        for (const int other : {0, 1, -1, 511, -512, 1022}) {
            check(one, other);
            check(other, one);
        }
    }
    for (const unsigned component : {14U, 25U}) {
        const auto message = decoded<ADSBAirborneVelocityMessageV1>(
            with(simulator::groundVelocity({}, -3, 4, false), component, 10, 0));
        EXPECT_EQ(message.groundSpeed() + message.heading(), 0) << "not available";
    }
}

TEST(ADSBPayloadValues, VerticalRatesAreThoseSent) {
    for (int rate = -510 * 64; rate <= 510 * 64; rate += 64) {
        const unsigned accuracy = static_cast<unsigned>(rate / 64 + 512) % 8;
        const bool source = rate % 3 != 0;
        const std::string payload = simulator::groundVelocity(
            {true, true, accuracy, source, rate, 550}, 5, -7, rate % 2 != 0);
        const auto message = decoded<ADSBAirborneVelocityMessageV0>(payload);
        EXPECT_EQ(message.verticalRate(), rate);
        EXPECT_EQ(message.verticalRateSource(), source ? Gnss : Baro);
        EXPECT_EQ(message.nucr(), accuracy);
        EXPECT_EQ(decoded<ADSBAirborneVelocityMessageV2>(payload).verticalRate(), rate);
    }
    const std::string down =
        simulator::groundVelocity({false, false, 0, false, -640, {}}, 1, 1, false);
    EXPECT_EQ(decoded<ADSBAirborneVelocityMessageV1>(with(down, 37, 9, 0)).verticalRate(), 0);
}

TEST(ADSBPayloadValues, EmergenciesAndSquawksAreThoseSent) {
    const char* const states[] = {"NO_EMG",  "EMERGENCY", "MEDICAL",   "MIN_FUEL",
                                  "NO_COMM", "HIJACK",    "AC_DOWNED", "UNDEFINED"};
    for (unsigned squawk = 0; squawk < 4096; ++squawk) {
        const unsigned state = squawk % 8;
        const std::string payload = simulator::emergencyStatus(state, squawk);
        const auto message = decoded<ADSBAircraftStatusMessageV2>(payload);
        EXPECT_EQ(message.subtype(), Status::AircraftStatusSubtype::EMERGENCY);
        EXPECT_EQ(static_cast<unsigned>(message.emergencyState()), state);
        EXPECT_EQ(valueOf(message, ADSBMessageField::EMG_STATE), states[state]);
        EXPECT_EQ(message.modeACode(), squawk);
        EXPECT_EQ(std::stoul(message.modeAOctString(), nullptr, 8), squawk);
        const auto early = decoded<ADSBAircraftStatusMessageV0>(payload);
        EXPECT_EQ(early.emergencyState(), message.emergencyState());
    }
}

TEST(ADSBPayloadValues, SubtypesHaveNamesEvenIfTheyAreRefused) {
    const test::CapturedLog log;
    const auto nameIn = [](ADSBMessage&& message, const std::string& firstByte) {
        message.decode(firstByte + std::string(6, '\0'));
        return message.fields().at(2).description();
    };
    EXPECT_EQ(nameIn(ADSBAirborneVelocityMessageV1(), "\x9B"), "AIR_SPEED");
    EXPECT_EQ(nameIn(ADSBAirborneVelocityMessageV1(), "\x9C"), "AIR_SPEED_SUPER_SONIC");
    EXPECT_EQ(nameIn(ADSBAircraftStatusMessageV2(), "\xE0"), "NO_INFO");
    EXPECT_EQ(nameIn(ADSBAircraftStatusMessageV2(), "\xE2"), "TCAS_RA");
}

TEST(ADSBPayloadValues, VersionNumbersAndTestDataAreThoseSent) {
    for (const unsigned version : {1U, 2U}) {
        for (const bool supplement : {false, true}) {
            simulator::OperationalStatus status;
            status.version = version;
            status.nicSupplementA = supplement;
            const auto message =
                decoded<ADSBAircraftOperationalStatusMessage>(simulator::operationalStatus(status));
            EXPECT_EQ(message.versionNumber(), version);
            EXPECT_EQ(message.version(), static_cast<MOPSVersion>(version));
            EXPECT_EQ(message.nicSupplementA(), supplement);
        }
    }
    const test::CapturedLog log;
    const auto later = decoded<ADSBAircraftOperationalStatusMessage>("F8 00 00 00 00 E0 00"_hex);
    EXPECT_EQ(later.versionNumber(), 7);
    EXPECT_EQ(valueOf(later, ADSBMessageField::VER_NUM), "7");
    EXPECT_EQ(later.version(), MOPSVersionUnknown);
    for (unsigned subtype = 0; subtype < 8; ++subtype) {
        const auto message =
            decoded<ADSBTestMessage>(simulator::testMessage(subtype, 0x0123456789AB));
        EXPECT_EQ(message.subtype(), subtype);
        EXPECT_EQ(message.testData(), "01 23 45 67 89 AB"_hex);
    }
}

TEST(ADSBPayloadValues, AreDefaultsBeforeAnyDecode) {
    EXPECT_EQ(ADSBIdentityMessage().description(), "TC=ACID, EC=0, CS=        ");
    EXPECT_EQ(ADSBSurfacePositionMessage().description(),
              "TC=POS_GND, SPD=0, HDG=0, CPR=ODD, LAT=0, LON=0");
    EXPECT_EQ(ADSBAirbornePositionMessageV2().description(),
              "TC=POS_AIR, AT=BARO, ALT=0, CPR=ODD, LAT=0, LON=0");
    EXPECT_EQ(ADSBAirbornePositionMessageV0().altResolution(), Resolution25Ft);
    EXPECT_EQ(ADSBAirborneVelocityMessageV0().description(),
              "TC=AIR_VEL, ST=GS, GS=0, HDG=0, VR=0, NUCr=0");
    EXPECT_EQ(ADSBTestMessage().description(), "TC=TEST, ST=0");
    EXPECT_EQ(ADSBAircraftStatusMessageV2().description(), "TC=AC_STATUS, MA=0000");
    EXPECT_EQ(ADSBAircraftStatusMessageV2().subtype(), Status::AircraftStatusSubtype::UNDEFINED);
    EXPECT_EQ(ADSBTargetStatusMessageV2().description(),
              "TC=TG_STATUS, ST=0, NACp=0, NICbaro=0, SIL=0, SILsupp=0");
    EXPECT_EQ(ADSBAircraftOperationalStatusMessage().description(), "TC=OP_STAT, VN=0, NICsa=0");
}

/// Decodes two payloads. Gives the description after that, whether the message is valid, and how
/// many fields the second payload added.
template <class Message>
std::string afterBoth(const std::string& first, const std::string& second) {
    auto message = decoded<Message>(first);
    const std::size_t before = message.fields().size();
    message.decode(second);
    return message.description() + (message.valid() ? " valid " : " refused ") +
           std::to_string(message.fields().size() - before);
}

TEST(ADSBPayloadValues, StayWhereTheNextPayloadDoesNotReplaceThem) {
    test::CapturedLog log;
    const std::string velocity = simulator::groundVelocity({}, 3, 4, false);
    EXPECT_EQ(afterBoth<ADSBAirborneVelocityMessageV1>(velocity, "9C 04 02 00 48 00 00"_hex),
              "TC=AIR_VEL, ST=AS_SS, VR=0 refused 3");
    EXPECT_EQ(afterBoth<ADSBAirborneVelocityMessageV1>(velocity, "9D 04 02 00 48 00 00"_hex),
              "TC=AIR_VEL, ST=GS, GS=5, HDG=36.8699, VR=0 refused 2");
    EXPECT_EQ(afterBoth<ADSBAirborneVelocityMessageV1>(velocity, with(velocity, 14, 10, 0)),
              "TC=AIR_VEL, ST=GS, GS=0, HDG=0, VR=0 valid 10");
    const std::string hijack = simulator::emergencyStatus(5, 07500);
    const std::string noInformation = "E0 40 00 00 00 00 00"_hex;
    const std::string unknown = "E3 40 00 00 00 00 00"_hex;
    EXPECT_EQ(afterBoth<ADSBAircraftStatusMessageV2>(hijack, noInformation),
              "TC=AC_STATUS, MA=7500 valid 4");
    EXPECT_EQ(afterBoth<ADSBAircraftStatusMessageV2>(hijack, unknown),
              "TC=AC_STATUS, MA=7500 refused 2");
    auto message = decoded<ADSBAircraftStatusMessageV0>(hijack);
    message.decode(noInformation);
    EXPECT_EQ(message.emergencyState(), Status::EmergencyState::HIJACK);
    message.decode(unknown);
    EXPECT_EQ(message.subtype(), Status::AircraftStatusSubtype::UNDEFINED);
    log.take();
    EXPECT_EQ(afterBoth<ADSBTestMessage>(simulator::testMessage(0, 1), hijack),
              "TC=TEST, ST=0 valid 0");
    EXPECT_EQ(log.take(), test::Lines{"[CRITICAL][ADSBMessage] Type code mismatch."});
}

} // namespace
} // namespace tolvarin::ondrel
