// Fills the fields of a message from the truth about its sender; the encoders do the rest.

#include "simulator/transponder.h"

#include "simulator/bit_writer.h"
#include "simulator/frame_encoder.h"

#include <optional>

namespace tolvarin::ondrel::simulator {
namespace {

/// "Climb", corrective, one threat.
constexpr ResolutionAdvisory climbAdvisory = {0x3000, 0, 0};

ResolutionAdvisory advisoryOf(const AircraftState& state) {
    return state.resolutionAdvisory ? climbAdvisory : ResolutionAdvisory{};
}

unsigned surveillanceStatus(const AircraftState& state) {
    if (state.emergency != Emergency::None) {
        return 1;
    }
    return state.alert ? 2 : (state.spi ? 3 : 0);
}

VelocityFields velocityFields(const AircraftState& state) {
    VelocityFields fields;
    fields.ifrCapability = state.mopsVersion < 2;
    fields.accuracy = state.quality.velocityAccuracy;
    fields.verticalRateSourceBit = state.verticalRateSourceBit;
    fields.verticalRateFtMin = state.verticalRateFtMin;
    fields.geometricMinusBaroFt = state.geometricMinusBaroFt;
    return fields;
}

AirAirFields airAirFields(const AircraftState& state) {
    AirAirFields fields;
    fields.onGround = state.onGround;
    fields.crosslink = state.acas;
    fields.sensitivityLevel = state.acas && !state.onGround ? 6 : 0;
    fields.replyInformation = state.acas ? 3 : 0; // vertical resolution only
    fields.altitudeFt = state.altitudeFt;
    return fields;
}

/// Register 1,0: squitter, identification and common usage capability.
std::string capabilityRegister(bool acas) {
    BitWriter bits(7);
    bits.put(0, 8, 0x10).put(15, 1, acas ? 1 : 0).put(16, 7, 5).put(32, 3, 7);
    return bits.bytes();
}

std::string registerOf(const AircraftState& state, unsigned number) {
    switch (number) {
    case 0x10:
        return capabilityRegister(state.acas);
    case 0x20:
        return identificationRegister(state.callsign);
    case 0x40:
        return verticalIntentionRegister(state.selectedAltitudeFt);
    default:
        return {};
    }
}

std::string surfaceMessage(const AircraftState& state, bool odd) {
    SurfacePosition position;
    position.typeCode = state.quality.surfaceTypeCode;
    position.groundSpeedKt = state.groundSpeedKt;
    position.trackDeg = state.headingDeg;
    position.odd = odd;
    position.cpr = encodeCpr(state.latitude, state.longitude, odd, CprGrid::Surface);
    return surfacePosition(position);
}

std::string airborneMessage(const AircraftState& state, bool odd) {
    const PositionQuality& quality = state.quality;
    AirbornePosition position;
    position.typeCode = state.sendsGnssHeight ? quality.gnssTypeCode : quality.baroTypeCode;
    position.surveillanceStatus = surveillanceStatus(state);
    position.supplement = state.mopsVersion >= 2 && quality.nicSupplementB;
    position.altitudeFt = state.sendsGnssHeight ? state.gnssHeightFt : state.altitudeFt;
    position.odd = odd;
    position.cpr = encodeCpr(state.latitude, state.longitude, odd, CprGrid::Airborne);
    return airbornePosition(position);
}

} // namespace

unsigned flightStatus(const AircraftState& state) {
    if (state.spi) {
        return state.alert ? 4 : 5;
    }
    return (state.alert ? 2U : 0U) + (state.onGround ? 1U : 0U);
}

unsigned capability(const AircraftState& state) {
    if (flightStatus(state) >= 2) {
        return 7;
    }
    return state.onGround ? 4 : 5;
}

std::string positionMessage(const AircraftState& state, bool odd) {
    return state.onGround ? surfaceMessage(state, odd) : airborneMessage(state, odd);
}

std::string velocityMessage(const AircraftState& state) {
    const VelocityFields fields = velocityFields(state);
    return state.sendsAirSpeed
               ? airVelocity(fields, state.headingDeg, state.airSpeedKt, state.supersonic)
               : groundVelocity(fields, state.eastKt, state.northKt, state.supersonic);
}

std::string identificationMessage(const AircraftState& state) {
    return identification(state.identificationTypeCode, state.emitterCategory, state.callsign);
}

std::string operationalStatusMessage(const AircraftState& state) {
    OperationalStatus status;
    status.version = state.mopsVersion;
    status.onGround = state.onGround;
    status.accuracy = state.quality.accuracy;
    status.nicSupplementA = state.quality.nicSupplementA;
    status.nicSupplementC = state.quality.nicSupplementC;
    status.nacv = state.quality.velocityAccuracy;
    status.acasOperational = state.acas;
    status.advisoryActive = state.resolutionAdvisory;
    status.identActive = state.spi;
    return operationalStatus(status);
}

std::string targetStateMessage(const AircraftState& state) {
    TargetState target;
    target.accuracy = state.quality.accuracy;
    target.selectedAltitudeFt = state.selectedAltitudeFt;
    target.selectedHeadingDeg = state.selectedHeadingDeg;
    target.acasOperational = state.acas;
    target.emergencyState = static_cast<unsigned>(state.emergency);
    return state.mopsVersion >= 2 ? targetStateV2(target) : targetStateV1(target);
}

std::string aircraftStatusMessage(const AircraftState& state) {
    if (state.resolutionAdvisory && state.mopsVersion >= 2) {
        return advisoryStatus(advisoryOf(state));
    }
    return emergencyStatus(static_cast<unsigned>(state.emergency),
                           state.mopsVersion >= 2 ? std::optional<unsigned>(state.squawk)
                                                  : std::nullopt);
}

std::string extendedSquitter(const AircraftState& state, const std::string& message) {
    switch (state.kind) {
    case EmitterKind::Vehicle:
    case EmitterKind::GroundStation:
        return df18(state.address, state.controlField, message);
    case EmitterKind::Military:
        return df19(state.address, 0, message);
    default:
        return df17(state.address, capability(state), message);
    }
}

std::string allCallReply(const AircraftState& state, unsigned interrogatorId) {
    return df11(state.address, capability(state), interrogatorId);
}

std::string airAirReply(const AircraftState& state, bool coordination) {
    const AirAirFields fields = airAirFields(state);
    return coordination ? df16(state.address, fields, advisoryRegister(advisoryOf(state)))
                        : df0(state.address, fields);
}

std::string surveillanceReply(const AircraftState& state, unsigned format,
                              unsigned registerNumber) {
    SurveillanceFields fields;
    fields.flightStatus = flightStatus(state);
    const std::string mb = registerOf(state, registerNumber);
    switch (format) {
    case 4:
        return df4(state.address, fields, state.altitudeFt);
    case 5:
        return df5(state.address, fields, state.squawk);
    case 20:
        return df20(state.address, fields, state.altitudeFt, mb);
    default:
        return df21(state.address, fields, state.squawk, mb);
    }
}

} // namespace tolvarin::ondrel::simulator
