// Airborne velocity, type code 19 (RTCA DO-260B, 2.2.3.2.6). Ground speeds (subtypes 1 and 2)
// decode; air speeds (3 and 4) are refused. The versions differ in the meaning of ME bits 10 to 12:
// NUCr in version 0, NACv later, which is not read.

#include <ondrel/adsb_airborne_velocity_message.h>

#include <ondrel/log.h>

#include "shared_fields.h"
#include "text.h"
#include "wire_field.h"

#include <array>
#include <cmath>
#include <string_view>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBAirVelMsg";

struct SubtypeNames {
    std::string_view field;
    std::string_view shortForm;
};

// By subtype. 0 and 5 to 7 are not assigned.
constexpr std::array<SubtypeNames, 5> subtypeNames = {{
    {"", ""},
    {"GROUND_SPEED", "GS"},
    {"GROUND_SPEED_SUPER_SONIC", "GS_SS"},
    {"AIR_SPEED", "AS"},
    {"AIR_SPEED_SUPER_SONIC", "AS_SS"},
}};

std::string subtypeText(u64 subtype) {
    return std::string(subtypeNames[subtype].field);
}

// By direction bit.
constexpr std::array<std::string_view, 2> eastWestTokens = {"W->E", "E->W"};
constexpr std::array<std::string_view, 2> northSouthTokens = {"S->N", "N->S"};
constexpr std::array<std::string_view, 2> verticalTokens = {"UP", "DOWN"};

namespace layout {

constexpr WireField<5, 3> subtype{ADSBMessageField::SUB_TYPE_AIR_VEL, subtypeText};
constexpr WireField<10, 3> nucr{ADSBMessageField::NUC_R};
constexpr WireField<13, 1> eastWestDirection{ADSBMessageField::DIR_EW, token<eastWestTokens>};
constexpr WireField<14, 10> eastWestVelocity{ADSBMessageField::VEL_EW};
constexpr WireField<24, 1> northSouthDirection{ADSBMessageField::DIR_NS, token<northSouthTokens>};
constexpr WireField<25, 10> northSouthVelocity{ADSBMessageField::VEL_NS};
// Bit 0 is read as barometric and bit 1 as GNSS. RTCA DO-260B has it the other way round.
constexpr WireField<35, 1> verticalRateSource{ADSBMessageField::VR_SRC,
                                              token<altitudeSourceTokens>};
constexpr WireField<36, 1> verticalRateSign{ADSBMessageField::VR_SIGN, token<verticalTokens>};
constexpr WireField<37, 9> verticalRate{ADSBMessageField::VR};
constexpr FieldGroup subtypeFields{subtype};
constexpr FieldGroup fields{eastWestDirection,  eastWestVelocity,   northSouthDirection,
                            northSouthVelocity, verticalRateSource, verticalRateSign,
                            verticalRate};
constexpr FieldGroup nucrFields{nucr};

} // namespace layout

constexpr double fullCircle = 6.283185307179586; // radians

/// The knots of a velocity code, east and north positive. Code 1 is speed 0. Code 0 means "not
/// available"; the caller has excluded it. Integers have no negative zero, which could turn the
/// heading by 180 degrees.
i32 component(u32 code, bool negative, i32 scale) {
    const i32 knots = (static_cast<i32>(code) - 1) * scale;
    return negative ? -knots : knots;
}

/// Degrees clockwise from north, from 0 to below 360; 0 if both components are 0.
double direction(i32 east, i32 north) {
    const double heading = std::atan2(east, north) * 360.0 / fullCircle;
    return heading < 0 ? heading + 360.0 : heading;
}

struct GroundVelocity {
    double speed = 0;   ///< knots
    double heading = 0; ///< degrees
};

/// All zero if a component is not available, which is code 0: one component alone gives neither
/// speed nor direction. `scale` is the knots of one step.
GroundVelocity readGroundVelocity(const PayloadAccess& payload, i32 scale) {
    const bool westward = payload.read(layout::eastWestDirection) != 0;
    const u32 eastWest = payload.read(layout::eastWestVelocity);
    const bool southward = payload.read(layout::northSouthDirection) != 0;
    const u32 northSouth = payload.read(layout::northSouthVelocity);
    if (eastWest == 0 || northSouth == 0) {
        return {};
    }
    const i32 east = component(eastWest, westward, scale);
    const i32 north = component(northSouth, southward, scale);
    return {std::sqrt(static_cast<double>(east * east + north * north)), direction(east, north)};
}

/// What the descriptions of all versions have.
text::Line& operator<<(text::Line& line, const ADSBAirborneVelocityMessage& message) {
    const auto type = message.velocityType();
    line << "TC=AIR_VEL, ST=" << subtypeNames[static_cast<u32>(type)].shortForm;
    if (type == ADSBAirborneVelocityMessage::GROUND_SPEED ||
        type == ADSBAirborneVelocityMessage::GROUND_SPEED_SUPER_SONIC) {
        line << ", GS=" << message.groundSpeed() << ", HDG=" << message.heading();
    }
    return line << ", VR=" << message.verticalRate();
}

/// Feet per minute, in steps of 64, up positive. 0 if the rate is not available, which is code 0.
i32 readVerticalRate(const PayloadAccess& payload) {
    const bool downward = payload.read(layout::verticalRateSign) != 0;
    const auto code = static_cast<i32>(payload.read(layout::verticalRate));
    const i32 rate = code == 0 ? 0 : (code - 1) * 64;
    return downward ? -rate : rate;
}

} // namespace

ADSBAirborneVelocityMessage::ADSBAirborneVelocityMessage() : ADSBMessage(AIR_VEL) {}

bool ADSBAirborneVelocityMessage::decodeImpl() {
    PayloadAccess payload(*this);
    const u32 subtype = payload.read(layout::subtype);
    if (subtype == 0 || subtype >= subtypeNames.size()) {
        Log::log(Log::Critical, moduleName, "Unknown Subtype=%u.", subtype);
        return false;
    }
    _velocityType = static_cast<AirborneVelocityType>(subtype);
    payload.list(layout::subtypeFields);
    if (_velocityType == AIR_SPEED || _velocityType == AIR_SPEED_SUPER_SONIC) {
        // Such a message has air speed and heading in place of the two components. The aircraft
        // sends it only while it knows no ground speed, and a target has no datum for air speed.
        Log::log(Log::Warning, moduleName, "Unsupported AIR_SPD message detected.");
        return false;
    }
    // Subtype 2 has steps of 4 knots, for components above 1022 knots.
    const GroundVelocity velocity =
        readGroundVelocity(payload, _velocityType == GROUND_SPEED_SUPER_SONIC ? 4 : 1);
    _groundSpeed = velocity.speed;
    _heading = velocity.heading;
    _verticalRateSource = static_cast<AltitudeSource>(payload.read(layout::verticalRateSource));
    _verticalRate = readVerticalRate(payload);
    payload.list(layout::fields);
    return true;
}

std::string ADSBAirborneVelocityMessage::description() const {
    text::Line line;
    return line << *this;
}

ADSBAirborneVelocityMessageV0::ADSBAirborneVelocityMessageV0() = default;

bool ADSBAirborneVelocityMessageV0::decodeImpl() {
    if (!ADSBAirborneVelocityMessage::decodeImpl()) {
        return false;
    }
    PayloadAccess payload(*this);
    _nucr = static_cast<u8>(payload.read(layout::nucr));
    payload.list(layout::nucrFields);
    return true;
}

std::string ADSBAirborneVelocityMessageV0::description() const {
    text::Line line;
    const ADSBAirborneVelocityMessage& common = *this;
    return line << common << ", NUCr=" << _nucr;
}

ADSBAirborneVelocityMessageV1::ADSBAirborneVelocityMessageV1() = default;

} // namespace tolvarin::ondrel
