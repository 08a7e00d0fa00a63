// ADS-B payloads, written field by field by the tables of RTCA DO-260, DO-260A and DO-260B. The
// positions are ME bits counted from 0; the standard counts from 1.

#include "simulator/payload_encoder.h"

#include "simulator/bit_writer.h"
#include "simulator/frame_encoder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tolvarin::ondrel::simulator {
namespace {

constexpr std::size_t messageBytes = 7;

/// Movement codes by rising speed (RTCA DO-260B, table 2-20): the first code of a row, its speed,
/// and the step to the next code.
struct MovementRow {
    unsigned code;
    double speedKt;
    double stepKt;
};
constexpr MovementRow movementRows[] = {
    {3, 0.125, 0.875 / 6}, {9, 1, 0.25}, {13, 2, 0.5}, {39, 15, 1}, {94, 70, 2}, {109, 100, 5},
};
constexpr double fastestMovementKt = 175;

BitWriter message(unsigned typeCode, unsigned threeBits) {
    BitWriter bits(messageBytes);
    bits.put(0, 5, typeCode).put(5, 3, threeBits);
    return bits;
}

unsigned bit(bool on) {
    return on ? 1 : 0;
}

/// Six bits: letters from 1 on; blank and digits have the low bits of their ASCII code.
unsigned characterCode(char character) {
    const bool letter = character >= 'A' && character <= 'Z';
    const bool asIs = character == ' ' || (character >= '0' && character <= '9');
    return letter ? static_cast<unsigned>(character - 'A' + 1)
                  : (asIs ? static_cast<unsigned>(character) : 0U);
}

void putCallsign(BitWriter& bits, std::string_view callsign) {
    for (std::size_t i = 0; i < 8; ++i) {
        bits.put(8 + 6 * i, 6, characterCode(i < callsign.size() ? callsign[i] : ' '));
    }
}

/// An angle in steps of 360 / 2^width degrees.
unsigned angleCode(double degrees, unsigned width) {
    if (!std::isfinite(degrees)) {
        return 0;
    }
    const auto steps = static_cast<double>(1U << width);
    const double turns = degrees / 360.0 - std::floor(degrees / 360.0);
    return static_cast<unsigned>(std::lround(turns * steps)) & ((1U << width) - 1U);
}

/// A sign bit (1 is negative) and a magnitude, rounded to steps. Code 1 is zero; code 0, which is
/// never written here, is unknown.
void putSigned(BitWriter& bits, std::size_t position, unsigned width, int value, int step) {
    const int largest = (1 << width) - 1;
    const std::int64_t steps = (std::llabs(value) + step / 2) / step + 1;
    bits.put(position, 1, bit(value < 0));
    bits.put(position + 1, width,
             static_cast<std::uint64_t>(std::min<std::int64_t>(steps, largest)));
}

void putCpr(BitWriter& bits, bool odd, const CprFrame& cpr) {
    bits.put(21, 1, bit(odd)).put(22, 17, cpr.latitude).put(39, 17, cpr.longitude);
}

BitWriter velocity(unsigned subtype, const VelocityFields& fields) {
    BitWriter bits = message(19, subtype);
    bits.put(8, 1, bit(fields.intentChange)).put(9, 1, bit(fields.ifrCapability));
    bits.put(10, 3, fields.accuracy).put(35, 1, bit(fields.verticalRateSourceBit));
    putSigned(bits, 36, 9, fields.verticalRateFtMin, 64);
    if (fields.geometricMinusBaroFt) {
        putSigned(bits, 48, 7, *fields.geometricMinusBaroFt, 25);
    }
    return bits;
}

std::string advisory(unsigned firstByte, const ResolutionAdvisory& advisory) {
    BitWriter bits(messageBytes);
    bits.put(0, 8, firstByte).put(8, 14, advisory.advisories).put(22, 4, advisory.complements);
    if (advisory.threatAddress != 0) {
        bits.put(28, 2, 1).put(30, 24, advisory.threatAddress);
    }
    return bits.bytes();
}

/// Versions 1 and 2 of the target state have these fields at the same places.
void putAccuracy(BitWriter& bits, const Accuracy& accuracy) {
    bits.put(39, 4, accuracy.nacp).put(43, 1, bit(accuracy.nicBaro)).put(44, 2, accuracy.sil);
}

unsigned unsignedSteps(double value, double step, int largest) {
    return static_cast<unsigned>(std::clamp(std::lround(value / step), 0L, long{largest}));
}

void putSurfaceCapability(BitWriter& bits, const OperationalStatus& status) {
    bits.put(20, 4, 3); // length and width code of a medium airliner
    if (status.version >= 2) {
        bits.put(16, 3, status.nacv).put(19, 1, bit(status.nicSupplementC));
    }
}

void putAirborneCapability(BitWriter& bits, const OperationalStatus& status) {
    // The same bit means "no ACAS" in version 1 and "ACAS operational" in version 2.
    bits.put(10, 1, bit(status.acasOperational == (status.version >= 2)));
    bits.put(14, 2, 3); // air-referenced velocity and target state reports
}

} // namespace

std::string identification(unsigned typeCode, unsigned category, std::string_view callsign) {
    BitWriter bits = message(typeCode, category);
    putCallsign(bits, callsign);
    return bits.bytes();
}

std::string identificationRegister(std::string_view callsign) {
    BitWriter bits(messageBytes);
    putCallsign(bits.put(0, 8, 0x20), callsign);
    return bits.bytes();
}

unsigned movementCode(double groundSpeedKt) {
    if (!(groundSpeedKt > 0)) {
        return 1;
    }
    if (groundSpeedKt >= fastestMovementKt) {
        return 124;
    }
    unsigned code = 2;
    for (const MovementRow& row : movementRows) {
        if (groundSpeedKt >= row.speedKt) {
            code = row.code + static_cast<unsigned>((groundSpeedKt - row.speedKt) / row.stepKt);
        }
    }
    return code;
}

std::string surfacePosition(const SurfacePosition& position) {
    BitWriter bits = message(position.typeCode, 0);
    bits.put(5, 7, movementCode(position.groundSpeedKt)).put(12, 1, bit(position.trackValid));
    bits.put(13, 7, position.trackValid ? angleCode(position.trackDeg, 7) : 0U);
    putCpr(bits, position.odd, position.cpr);
    return bits.bytes();
}

std::string airbornePosition(const AirbornePosition& position) {
    const unsigned altitude = altitudeField(position.altitudeFt);
    BitWriter bits = message(position.typeCode, 0);
    bits.put(5, 2, position.surveillanceStatus).put(7, 1, bit(position.supplement));
    // The 12-bit altitude is the 13-bit one without its M bit.
    bits.put(8, 6, altitude >> 7U).put(14, 6, altitude);
    putCpr(bits, position.odd, position.cpr);
    return bits.bytes();
}

std::string groundVelocity(const VelocityFields& fields, int eastKt, int northKt, bool supersonic) {
    BitWriter bits = velocity(supersonic ? 2 : 1, fields);
    putSigned(bits, 13, 10, eastKt, supersonic ? 4 : 1);
    putSigned(bits, 24, 10, northKt, supersonic ? 4 : 1);
    return bits.bytes();
}

std::string airVelocity(const VelocityFields& fields, double headingDeg, int airSpeedKt,
                        bool supersonic) {
    BitWriter bits = velocity(supersonic ? 4 : 3, fields);
    // The air speed is at the place of the northern component of a ground velocity. The bit of the
    // sign means "true air speed" here.
    putSigned(bits, 24, 10, airSpeedKt, supersonic ? 4 : 1);
    bits.put(13, 1, 1).put(14, 10, angleCode(headingDeg, 10)).put(24, 1, 1);
    return bits.bytes();
}

std::string emergencyStatus(unsigned emergencyState, std::optional<unsigned> squawk) {
    BitWriter bits = message(28, 1);
    return bits.put(8, 3, emergencyState).put(11, 13, squawk ? identityField(*squawk) : 0U).bytes();
}

std::string advisoryStatus(const ResolutionAdvisory& value) {
    return advisory(28U << 3U | 2U, value);
}

std::string advisoryRegister(const ResolutionAdvisory& value) {
    return advisory(0x30, value);
}

std::string targetStateV1(const TargetState& state) {
    BitWriter bits = message(29, 0);
    bits.put(7, 2, 1).put(13, 2, 1); // altitude from the control unit, capturing it
    bits.put(15, 10, unsignedSteps(state.selectedAltitudeFt + 1000.0, 100, 1023));
    bits.put(25, 2, 1).put(27, 9, unsignedSteps(state.selectedHeadingDeg, 1, 359)).put(37, 2, 1);
    putAccuracy(bits, state.accuracy);
    bits.put(51, 2, state.acasOperational ? 0 : 2).put(53, 3, state.emergencyState);
    return bits.bytes();
}

std::string targetStateV2(const TargetState& state) {
    BitWriter bits = message(29, 2U | bit(state.accuracy.silSupplement));
    bits.put(9, 11, unsignedSteps(state.selectedAltitudeFt, 32, 2046) + 1);
    bits.put(20, 9, unsignedSteps(state.pressureHpa - 800.0, 0.8, 510) + 1);
    bits.put(29, 1, 1).put(30, 9, angleCode(state.selectedHeadingDeg, 9));
    putAccuracy(bits, state.accuracy);
    bits.put(46, 2, 3).put(48, 1, bit(state.verticalNavigation)); // modes told, autopilot engaged
    bits.put(52, 1, bit(state.acasOperational)).put(53, 1, 1);    // lateral navigation
    return bits.bytes();
}

std::string verticalIntentionRegister(int selectedAltitudeFt) {
    BitWriter bits(messageBytes);
    bits.put(0, 1, 1).put(1, 12, unsignedSteps(selectedAltitudeFt, 16, 4095));
    bits.put(26, 1, 1).put(27, 12, 2133); // 1013.3 hPa
    return bits.bytes();
}

std::string operationalStatus(const OperationalStatus& status) {
    BitWriter bits = message(31, bit(status.onGround));
    if (status.onGround) {
        putSurfaceCapability(bits, status);
    } else {
        putAirborneCapability(bits, status);
    }
    bits.put(26, 1, bit(status.advisoryActive)).put(27, 1, bit(status.identActive));
    bits.put(40, 3, status.version).put(43, 1, bit(status.nicSupplementA));
    bits.put(44, 4, status.accuracy.nacp).put(50, 2, status.accuracy.sil);
    bits.put(52, 1, bit(!status.onGround && status.accuracy.nicBaro));
    bits.put(54, 1, bit(status.version >= 2 && status.accuracy.silSupplement));
    return bits.bytes();
}

std::string testMessage(unsigned subtype, std::uint64_t data) {
    return message(23, subtype).put(8, 48, data).bytes();
}

} // namespace tolvarin::ondrel::simulator
